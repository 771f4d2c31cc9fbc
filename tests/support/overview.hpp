// An output with an overview, and a user who works in it by keys and by the pointer.
#pragma once

#include "desktop.hpp"
#include "input/overview.hpp"
#include "workspaces/focus.hpp"

#include <linux/input-event-codes.h>
#include <set>

namespace test
{

struct overview_desk : desktop {
    void SetUp() override
    {
        desktop::SetUp();
        plug("A", 1280, 704);
        keyboard = &plug_keyboard();
        pointer = &plug_pointer();
        point_at(*pointer, 700, 690);
    }
    // The last one is raised last.
    void map_windows(const std::vector<std::string> &names)
    {
        for (const std::string &name : names)
            windows[name] = &map(name, {200, 100});
        settle();
    }
    void open()
    {
        overview_toggle(server);
        ASSERT_TRUE(server.overview.active);
        settle();
    }
    std::vector<std::string> items()
    {
        std::vector<std::string> names;
        names.reserve(server.overview.items.size());
        for (const overview_item &item : server.overview.items)
            names.emplace_back(tl_app_id(*item.t));
        return names;
    }
    const overview_item &item(const std::string &name)
    {
        for (const overview_item &item : server.overview.items)
            if (tl_app_id(*item.t) == name)
                return item;
        ADD_FAILURE() << "no item " << name;
        std::abort();
    }
    std::vector<int> strip()
    {
        std::vector<int> numbers;
        numbers.reserve(server.overview.ws_items.size());
        for (const overview_workspace &ws : server.overview.ws_items)
            numbers.push_back(ws.workspace->num);
        return numbers;
    }
    void point_at_middle(const wlr_box &box)
    {
        point_at(*pointer, box.x + box.width / 2.0, box.y + box.height / 2.0);
    }
    void point_at_workspace(int num)
    {
        for (const overview_workspace &ws : server.overview.ws_items)
            if (ws.workspace->num == num)
                return point_at_middle(ws.box);
        ADD_FAILURE() << "no workspace " << num;
    }
    void click(uint32_t button = BTN_LEFT) const
    {
        pointer->press(button);
        pointer->release(button);
    }
    void drag_to_workspace(const std::string &name, int num)
    {
        point_at_middle(item(name).rect);
        pointer->press(BTN_LEFT);
        point_at_workspace(num);
        pointer->release(BTN_LEFT);
    }
    std::string selected()
    {
        const int sel = server.overview.sel;
        return sel < 0 ? "" : items().at(size_t(sel));
    }
    std::string focused() { return tl_app_id(*focused_toplevel(server)); }
    [[nodiscard]] bool ring_shows() const
    {
        return server.overview.ring != nullptr && server.overview.ring->node.enabled;
    }
    [[nodiscard]] bool is_closed() const
    {
        return server.overview.tree == nullptr && !server.overview.active && !server.overview.closing;
    }
    std::map<std::string, window *> windows;
    made_up_keyboard *keyboard = nullptr;
    made_up_pointer *pointer = nullptr;
};

// With effects, so that pictures move. Nothing is left of what the start has armed.
struct zooming_overview : overview_desk {
    void SetUp() override
    {
        overview_desk::SetUp();
        config("force_effects = true\n");
        run_clock(std::chrono::seconds{5}); // past what the start has armed
    }
    // Maps windows, which also fade in, and waits for the end of that.
    void map_faded(const std::vector<std::string> &names)
    {
        map_windows(names);
        run_clock(std::chrono::milliseconds{200});
        settle();
    }
    void expect_no_timer() { EXPECT_FALSE(world.advance_clock_ms(10'000)) << "a timer is still armed"; }
    wlr_box shown(const std::string &name)
    {
        const wlr_scene_buffer &picture = *item(name).node;
        return {picture.node.x, picture.node.y, picture.dst_width, picture.dst_height};
    }
    // Returns the opacities of all pictures: tiles, titles, badges and thumbnails.
    std::set<float> opacities()
    {
        std::set<float> all;
        for (auto &node : each<&wlr_scene_node::link>(server.overview.tree->children))
            if (node.type == WLR_SCENE_NODE_BUFFER)
                all.insert(wlr_scene_buffer_from_node(&node)->opacity);
        return all;
    }
};

} // namespace test
