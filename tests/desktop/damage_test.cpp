// Repainting only what has changed gives the same picture as repainting everything, with all effects on.

#include "support/desktop.hpp"
#include "support/wayland_layer.hpp"

#include "input/overview.hpp"
#include "presentation/decorations.hpp"
#include "reload.hpp"
#include "windows/fullscreen.hpp"
#include "windows/states.hpp"
#include "workspaces/focus.hpp"
#include "workspaces/layout.hpp"
#include "workspaces/switch.hpp"

#include <array>
#include <format>
#include <optional>
#include <random>

using test::image;
using test::window;

namespace
{

// Blurring and blending round differently where a pass begins elsewhere.
constexpr int tolerance = 3;

// Within this distance from the right and the lower edge, the library's blur mixes in what an earlier blur
// has left in its buffers.
constexpr int blurred_edge = 48;

image without_edges(const image &whole)
{
    image inner{.width = whole.width - blurred_edge, .height = whole.height - blurred_edge, .argb = {}};
    for (int y = 0; y < inner.height; y++)
        for (int x = 0; x < inner.width; x++)
            inner.argb.push_back(whole.at(x, y));
    return inner;
}

struct damage : test::desktop {
    static constexpr int width = 480, height = 300;

    void SetUp() override
    {
        desktop::SetUp();
        plug("A", width, height);
        config("force_effects = true\nblur = true\nglow = true\ndim_inactive = 0.3\ngaps = 6\n");
        config_reload(server);
        pointer = &plug_pointer();
        point_at(*pointer, 240, 290);
    }
    image repainted()
    {
        vantore_output &o = output("A");
        const uint32_t before = o.wlr_output->commit_seq;
        wlr_damage_ring_add_whole(&o.scene_output->damage_ring);
        wlr_output_schedule_frame(o.wlr_output);
        EVENTUALLY(o.wlr_output->commit_seq != before);
        settle();
        return picture("A");
    }
    void expect_same(const std::string &done)
    {
        steps++;
        settle();
        const image partly = without_edges(picture("A")), whole = without_edges(repainted());
        const test::difference d = compare(partly, whole, tolerance);
        EXPECT_EQ(d.pixels, 0U) << "by at most " << d.largest << ", after\n" << done;
        if (d.pixels == 0)
            return;
        (void)partly.save(std::format("damage.{}.partly.png", steps));
        (void)whole.save(std::format("damage.{}.whole.png", steps));
        (void)d.picture.save(std::format("damage.{}.diff.png", steps));
    }
    window &open_window(int x, int y, test::size s, uint32_t color)
    {
        window &w = map("w" + std::to_string(windows.size()), s);
        w.fill(color);
        settle();
        record(w).ssd = true;
        dec_layout(record(w));
        place(w, x, y);
        windows.push_back(&w);
        return w;
    }
    int steps = 0;
    std::vector<window *> windows;
    test::made_up_pointer *pointer = nullptr;
};

TEST_F(damage, of_an_overview_that_opens_and_closes_repaints_enough)
{
    open_window(20, 50, {160, 120}, 0xff336699);
    open_window(200, 80, {120, 160}, 0xffcc9933);
    run_clock(std::chrono::milliseconds{300});
    expect_same("two windows");
    overview_toggle(server);
    for (int ms = 0; ms < 200; ms += 30) {
        advance_clock_ms(30);
        expect_same("the overview opens, " + std::to_string(ms));
    }
    point_at(*pointer, 300, 100);
    expect_same("the pointer selects a tile");
    overview_toggle(server);
    for (int ms = 0; ms < 200; ms += 30) {
        advance_clock_ms(30);
        expect_same("the overview closes, " + std::to_string(ms));
    }
}

// Without blur, whose own faults docs/decisions/blur.md tells.
struct random_scene : damage {
    void SetUp() override
    {
        damage::SetUp();
        config("force_effects = true\nglow = true\ndim_inactive = 0.3\ngaps = 6\n");
        config_reload(server);
    }
    int below(int end) { return int(random() % unsigned(end)); }
    window *any() { return windows.empty() ? nullptr : windows[size_t(below(int(windows.size())))]; }

    std::string open_any()
    {
        if (windows.size() >= 4)
            return "nothing";
        static constexpr std::array<uint32_t, 4> colors{0xff336699, 0xffcc9933, 0xff993366, 0xffffffff};
        window &w = open_window(below(width - 60), 30 + below(height - 60),
                                {60 + below(200), 60 + below(120)}, colors[size_t(below(4))]);
        return "open " + std::to_string(record(w).id);
    }
    std::string close_any()
    {
        if (windows.size() < 3)
            return "nothing";
        const size_t index = size_t(below(int(windows.size())));
        windows[index]->destroy();
        windows.erase(windows.begin() + ptrdiff_t(index));
        settle();
        return "close";
    }
    std::string change_any()
    {
        window *w = any();
        if (w == nullptr)
            return "nothing";
        vantore_toplevel &t = record(*w);
        switch (below(7)) {
        case 0:
            place(*w, below(width) - 40, below(height));
            return "move";
        case 1:
            tl_set_size(t, 60 + below(250), 60 + below(150));
            return "resize";
        case 2:
            focus_toplevel_ex(&t, true);
            return "raise";
        case 3:
            focus_toplevel_ex(&t, false);
            return "focus";
        case 4:
            toplevel_toggle_maximize(t);
            return "maximize or restore";
        case 5:
            toplevel_minimize(t);
            return "minimize";
        default:
            w->fill(0xff000000U | unsigned(random()));
            return "draw";
        }
    }
    std::string change_desktop()
    {
        switch (below(5)) {
        case 0:
            overview_toggle(server);
            return "toggle the overview";
        case 1:
            output_set_current(output("A"), &workspace(1 + below(2)));
            return "switch workspaces";
        case 2:
            toggle_ws_layout(server);
            return "toggle the layout";
        case 3:
            panel->draw({width, 20});
            return "the panel draws";
        default:
            point_at(*pointer, below(width), below(height));
            return "point";
        }
    }
    std::string step()
    {
        std::string done;
        switch (below(5)) {
        case 0:
            done = open_any();
            break;
        case 1:
            done = close_any();
            break;
        case 2:
            done = change_desktop();
            break;
        default:
            done = change_any();
        }
        settle();
        const int ms = below(3) == 0 ? 0 : 10 + below(200);
        if (ms > 0)
            advance_clock_ms(ms);
        return done + ", " + std::to_string(ms) + " ms";
    }
    std::mt19937 random;
    std::optional<test::layer_surface> panel;
};

TEST_F(random_scene, repaints_what_has_changed)
{
    for (unsigned seed = 1; seed <= 3; seed++) {
        random.seed(seed);
        test::layer_traits bar = test::top_bar(20);
        bar.name = "vantore-panel";
        bar.argb = 0x80402010;
        panel.emplace(connect(), bar);
        settle();
        std::string done = "seed " + std::to_string(seed);
        for (int i = 0; i < 25 && !HasFailure(); i++) {
            done += "\n" + step();
            expect_same(done);
        }
        overview_end(server);
        panel.reset();
    }
}

} // namespace
