// Measures in this process what effects and the pictures of windows cost: a frame, a change of focus, a step
// of a move or a resize, the overview, a slide and the switcher. Rendering is done in software, so the driver
// draws in threads of its own. A frame is compared with the same nodes in a scene that has nothing else to
// do.

#include "in_process.hpp"
#include "support/desktop.hpp"

#include "cairo_buffer.hpp"
#include "input/overview.hpp"
#include "input/switcher.hpp"
#include "outputs/pacing.hpp"
#include "presentation/decorations.hpp"
#include "reload.hpp"
#include "workspaces/focus.hpp"
#include "workspaces/switch.hpp"

#include <chrono>
#include <cstdio>

// Lets a copy show what the original shows. The scene gives up the compositor's own pictures once they are in
// the GPU's memory, so a plain picture of the same size stands for them.
static void copy_content(wlr_scene_buffer &shown, wlr_scene_buffer *copy)
{
    const wlr_scene_surface *surface = wlr_scene_surface_try_from_buffer(&shown);
    const wlr_texture *texture = shown.WLR_PRIVATE.texture;
    if (surface != nullptr && surface->surface->buffer != nullptr)
        return wlr_scene_buffer_set_buffer(copy, &surface->surface->buffer->base);
    if (shown.buffer != nullptr || texture == nullptr)
        return wlr_scene_buffer_set_buffer(copy, shown.buffer);
    cairo_t *cr = nullptr;
    cairo_buffer *plain = cairo_buffer_create(int(texture->width), int(texture->height), &cr);
    cairo_paint_with_alpha(cr, 0.5);
    cairo_destroy(cr);
    scene_buffer_set_cairo(copy, plain);
}

// Copies what a scene shows into another one.
static void copy_nodes(wlr_scene_tree &from, wlr_scene_tree *to)
{
    for (auto &node : each<&wlr_scene_node::link>(from.children)) {
        wlr_scene_node *copy = nullptr;
        switch (node.type) {
        case WLR_SCENE_NODE_TREE: {
            wlr_scene_tree *tree = wlr_scene_tree_create(to);
            copy_nodes(*wlr_scene_tree_from_node(&node), tree);
            copy = &tree->node;
            break;
        }
        case WLR_SCENE_NODE_RECT: {
            const wlr_scene_rect &rect = *wlr_scene_rect_from_node(&node);
            wlr_scene_rect *r = wlr_scene_rect_create(to, rect.width, rect.height, rect.color);
            wlr_scene_rect_set_corner_radii(r, rect.corners);
            copy = &r->node;
            break;
        }
        case WLR_SCENE_NODE_SHADOW: {
            const wlr_scene_shadow &shadow = *wlr_scene_shadow_from_node(&node);
            wlr_scene_shadow *s = wlr_scene_shadow_create(
                to, shadow.width, shadow.height, shadow.corner_radius, shadow.blur_sigma, shadow.color);
            wlr_scene_shadow_set_clipped_region(s, shadow.clipped_region);
            copy = &s->node;
            break;
        }
        case WLR_SCENE_NODE_BLUR: {
            const wlr_scene_blur &blur = *wlr_scene_blur_from_node(&node);
            wlr_scene_blur *b = wlr_scene_blur_create(to, blur.width, blur.height);
            wlr_scene_blur_set_should_only_blur_bottom_layer(b, blur.should_only_blur_bottom_layer);
            wlr_scene_blur_set_strength(b, blur.strength);
            wlr_scene_blur_set_corner_radii(b, blur.corners);
            copy = &b->node;
            break;
        }
        case WLR_SCENE_NODE_BUFFER: {
            wlr_scene_buffer &shown = *wlr_scene_buffer_from_node(&node);
            wlr_scene_buffer *b = wlr_scene_buffer_create(to, nullptr);
            copy_content(shown, b);
            wlr_scene_buffer_set_dest_size(b, shown.dst_width, shown.dst_height);
            wlr_scene_buffer_set_corner_radii(b, shown.corners);
            wlr_scene_buffer_set_opacity(b, shown.opacity);
            copy = &b->node;
            break;
        }
        default:
            continue;
        }
        wlr_scene_node_set_position(copy, node.x, node.y);
        wlr_scene_node_set_enabled(copy, node.enabled);
    }
}

struct desktop : test::desktop {
    void SetUp() override
    {
        test::desktop::SetUp();
        plug("A", 1920, 1088);
        program = &connect();
    }
    void use(const std::string &settings)
    {
        config(settings);
        config_reload(server);
        settle();
    }
    void map_up_to(int count)
    {
        for (int i = int(windows.size()); i < count; i++) {
            test::window &w = program->create_window("window");
            w.preferred = {400, 300};
            w.open();
            ASSERT_TRUE(until([&] { return find_record(w) != nullptr; }));
            settle();
            record(w).ssd = true;
            dec_layout(record(w));
            place(w, 40 + i * 131 % 1400, 40 + i * 71 % 700);
            windows.push_back(&w);
        }
        run_clock(std::chrono::milliseconds{300});
        settle();
    }
    // Paints at once, because the settings below leave no frame for later. The driver may go on drawing in
    // its threads.
    void paint_all()
    {
        vantore_output &o = output("A");
        const uint32_t before = o.wlr_output->commit_seq;
        wlr_damage_ring_add_whole(&o.scene_output->damage_ring);
        wlr_output_update_needs_frame(o.wlr_output);
        output_frame(o);
        ASSERT_NE(o.wlr_output->commit_seq, before);
    }
    cost frame()
    {
        return measure([&] { settle(); }, [&] { paint_all(); });
    }
    // The same nodes on another output, without a compositor around them.
    cost floor_frame()
    {
        test::made_up_output &bare = plug("floor", 1920, 1088);
        wlr_scene *scene = wlr_scene_create();
        copy_nodes(server.scene->tree, &scene->tree);
        wlr_scene_output *shown = wlr_scene_output_create(scene, &bare.base);
        const cost c = measure([&] { settle(); },
                               [&] {
                                   const uint32_t before = bare.base.commit_seq;
                                   wlr_damage_ring_add_whole(&shown->damage_ring);
                                   wlr_output_update_needs_frame(&bare.base);
                                   wlr_scene_output_commit(shown, nullptr);
                                   ASSERT_NE(bare.base.commit_seq, before);
                               });
        wlr_scene_output_destroy(shown);
        wlr_scene_node_destroy(&scene->tree.node);
        unplug("floor");
        return c;
    }
    test::client *program = nullptr;
    std::vector<test::window *> windows;
};

static constexpr const char *without_effects = "max_render_time = off\nforce_effects = false\n";
static constexpr const char *with_effects = "max_render_time = off\nforce_effects = true\nblur = true\nglow "
                                            "= true\ndim_inactive = 0.2\ncorner_radius = 10\n";

TEST_F(desktop, paints_ten_windows)
{
    map_up_to(10);
    for (const char *settings : {without_effects, with_effects}) {
        const std::string name = settings == with_effects ? "with effects" : "without effects";
        use(settings);
        print("a whole frame of 10 windows " + name, frame());
        print("the same nodes alone", floor_frame());
    }
}

TEST_F(desktop, changes_windows)
{
    map_up_to(10);
    for (const char *settings : {without_effects, with_effects}) {
        const std::string name = settings == with_effects ? " with effects" : " without effects";
        use(settings);
        vantore_toplevel &a = record(*windows[0]), &b = record(*windows[1]);
        int i = 0;
        const auto rest = [&] { settle(); };
        print("a change of focus" + name,
              measure(rest, [&] { focus_toplevel_ex(i++ % 2 != 0 ? &a : &b, true); }));
        print("a step of a move" + name, measure(rest, [&] { tl_move(a, 100 + i++ % 50, 100); }));
        print("a step of a resize" + name, measure(rest, [&] { tl_set_size(a, 400 + i++ % 50, 300); }));
    }
}

TEST_F(desktop, opens_the_overview)
{
    use(with_effects);
    for (const int count : {1, 12, 64}) {
        map_up_to(count);
        const cost c = measure(
            [&] {
                overview_end(server);
                settle();
            },
            [&] { overview_toggle(server); });
        print("opening the overview of " + std::to_string(count) + " windows", c);
        overview_end(server);
    }
}

TEST_F(desktop, slides)
{
    map_up_to(20);
    use(with_effects);
    int num = 1;
    const cost c = measure(
        [&] {
            settle();
            if (server.sliding.from == nullptr)
                output_set_current(output("A"), &workspace(num = 3 - num));
        },
        [&] {
            advance_clock_ms(16);
            paint_all();
        });
    print("a step of a slide with 20 windows, with its frame", c);
}

TEST_F(desktop, steps_through_windows)
{
    map_up_to(20);
    use(with_effects);
    for (const uint32_t modifier : {WLR_MODIFIER_ALT, WLR_MODIFIER_LOGO}) {
        const char *look = modifier == WLR_MODIFIER_ALT ? "cards" : "rows";
        switcher_step(server, modifier);
        const cost c = measure([&] { settle(); }, [&] { switcher_step(server, modifier); });
        print("a step of the switcher with 20 " + std::string{look}, c);
        switcher_cancel(server);
    }
}
