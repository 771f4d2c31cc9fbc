// A session with fullscreen windows, and what other programs learn about them.
#pragma once

#include "layers.hpp"

#include "workspaces/focus.hpp"

#include <fstream>

namespace test
{

// Output A of the fixture below, and B, where a test plugs in an output of this size.
inline constexpr wlr_box screen_a{0, 0, 1280, 704}, screen_b{1280, 0, 800, 600};

struct fullscreen_desk : layers {
    void SetUp() override
    {
        layers::SetUp();
        settle();
        (void)heard();
    }

    window &map_fullscreen(const std::string &app_id, size preferred = {640, 480})
    {
        window &w = map(app_id, preferred);
        w.request_fullscreen();
        settle();
        return w;
    }

    wlr_scene_tree *parent(const window &w) { return record(w).scene_tree->node.parent; }
    void focus(const window &w)
    {
        focus_toplevel_ex(&record(w), true);
        settle();
    }
    bool is_told(const window &w) { return w.has(FULLSCREEN); }

    // Returns the lines of the file that other programs read, or one line "none" if there is no file.
    std::vector<std::string> file()
    {
        std::ifstream in{world.runtime_directory() / "vantore-fs"};
        if (!in)
            return {"none"};
        std::vector<std::string> lines;
        for (std::string line; std::getline(in, line);)
            lines.push_back(line);
        return lines;
    }
};

} // namespace test
