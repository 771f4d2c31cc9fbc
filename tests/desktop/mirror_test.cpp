// Outputs that show a copy of a window or of another output.

#include "support/notifications.hpp"
#include "support/outputs.hpp"
#include "support/wayland_layer.hpp"
#include "support/wayland_seat.hpp"

#include "input/overview.hpp"
#include "outputs/mirror.hpp"
#include "outputs/power.hpp"
#include "text.hpp"
#include "windows/fullscreen.hpp"
#include "windows/states.hpp"
#include "workspaces/focus.hpp"
#include "workspaces/switch.hpp"
#include "workspaces/transfer.hpp"

#include <cmath>
#include <wayland-client.h>

using test::notifications_in;
using test::window;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

namespace
{

constexpr uint32_t red = 0xffcc3311, blue = 0xff1133cc, black = 0xff000000, backdrop = 0xff0f121a;

// Two outputs side by side. B is half as large as A.
struct mirrors : test::outputs_desk {
    void SetUp() override
    {
        outputs_desk::SetUp();
        plug_display("A", 1280, 704);
        plug_display("B", 640, 352);
        pointer = &plug_pointer();
        point_at(*pointer, 20, 600);
        settle();
        (void)heard();
    }

    // It has a plane for the pointer, and can't show buffers of other sizes than its own.
    void plug_display(const std::string &name, int width, int height)
    {
        plug({.name = name,
              .width = width,
              .height = height,
              .has_cursor_plane = true,
              .accepts = [](const wlr_output_state &state) {
                  const wlr_box &at = state.buffer_dst_box;
                  return (state.committed & WLR_OUTPUT_STATE_BUFFER) == 0 || at.width == 0 ||
                         (at.width == state.buffer->width && at.height == state.buffer->height);
              }});
    }
    void mirror(const std::string &name, const std::string &source)
    {
        command("output " + name + " mirror " + source);
        settle();
    }
    std::string window_source(const window &w) { return "window " + std::to_string(record(w).id); }
    bool is_mirror(const std::string &name) { return output(name).mirror.mir_on; }
    window &red_window(int lx, int ly, test::size size)
    {
        window &w = map("red", size);
        place(w, lx, ly);
        w.fill(red);
        settle();
        return w;
    }
    // On A, and mirrored by B.
    window &mirrored_window()
    {
        window &w = red_window(200, 100, {320, 176});
        mirror("B", window_source(w));
        return w;
    }
    wlr_scene_buffer *copy_on(const std::string &name)
    {
        wlr_scene_buffer *copy = output(name).mirror.mir_cursor;
        return copy != nullptr && copy->node.enabled ? copy : nullptr;
    }
    // In output units. Empty if there is no copy.
    wlr_box pointer_on(const std::string &name)
    {
        const wlr_scene_buffer *copy = copy_on(name);
        return copy != nullptr ? wlr_box{.x = copy->node.x,
                                         .y = copy->node.y,
                                         .width = copy->dst_width,
                                         .height = copy->dst_height}
                               : wlr_box{};
    }
    test::made_up_pointer *pointer = nullptr;
};

} // namespace

// What a mirror of an output shows

TEST_F(mirrors, of_an_output_show_its_picture)
{
    window &w = red_window(200, 100, {400, 200});
    mirror("B", "output A");
    EVENTUALLY_EQ(pixel("B", 101, 51), red);
    EXPECT_EQ(pixel("B", 298, 148), red);
    EXPECT_EQ(pixel("B", 320, 200), backdrop);
    place(w, 600, 300);
    EVENTUALLY_EQ(pixel("B", 301, 151), red);
    EXPECT_EQ(pixel("B", 101, 51), backdrop);
    w.fill(blue);
    EVENTUALLY_EQ(pixel("B", 301, 151), blue);
    EXPECT_THAT(world.log(), HasSubstr("output B now mirroring screen A\n"));
    EXPECT_THAT(heard(), testing::Contains(VNT_EVT_OUTPUTS));
}

TEST_F(mirrors, of_an_output_rest_while_it_does)
{
    red_window(200, 100, {400, 200});
    mirror("B", "output A");
    settle();
    const auto before = output("B").wlr_output->commit_seq;
    settle();
    EXPECT_EQ(output("B").wlr_output->commit_seq, before);
    EXPECT_EQ(output("B").mirror.seen, output("A").wlr_output->commit_seq);
}

TEST_F(mirrors, leave_bars_beside_a_narrow_picture)
{
    plug_display("C", 1024, 768);
    point_at(*pointer, 2000, 100);
    settle();
    red_window(1920, 0, {100, 100});
    mirror("A", "screen C");
    EVENTUALLY_EQ(pixel("A", 175, 5), red); // 939 wide, so 170 to the left
    EXPECT_EQ(pixel("A", 165, 5), black);
    EXPECT_EQ(pixel("A", 1115, 350), black);
    EXPECT_EQ(output("A").mirror.fit.box, (wlr_box{170, 0, 939, 704}));
}

TEST_F(mirrors, of_a_turned_output_show_it_the_right_way_up)
{
    command("output A transform 90");
    settle();
    red_window(0, 0, {300, 300}); // on a screen of 704x1280
    mirror("B", "output A");
    EXPECT_EQ(output("B").mirror.fit.box, (wlr_box{223, 0, 194, 352}));
    EVENTUALLY_EQ(pixel("B", 240, 20), red);
    EXPECT_EQ(pixel("B", 240, 340), backdrop);
    EXPECT_EQ(pixel("B", 200, 20), black);
    command("output A transform 180");
    EVENTUALLY_EQ(output("B").mirror.fit.box, (wlr_box{0, 0, 640, 352}));
    EVENTUALLY_EQ(pixel("B", 20, 20), red);
}

TEST_F(mirrors, of_a_scaled_output_show_all_of_it)
{
    command("output A scale 2");
    settle();
    red_window(320, 176, {100, 100}); // the lower right quarter begins there
    mirror("B", "output A");
    EVENTUALLY_EQ(pixel("B", 325, 180), red);
    EXPECT_EQ(pixel("B", 315, 180), backdrop);
}

TEST_F(mirrors, follow_their_own_output_when_it_changes)
{
    red_window(0, 0, {640, 704}); // the left half
    mirror("B", "output A");
    wlr_swapchain *swapchain = output("B").mirror.mir_sc.get();
    command("output B mode 320x352");
    settle();
    EXPECT_EQ(output("B").mirror.fit.box, (wlr_box{0, 88, 320, 176}));
    EVENTUALLY_EQ(pixel("B", 155, 100), red);
    EXPECT_EQ(pixel("B", 165, 100), backdrop);
    EXPECT_EQ(pixel("B", 155, 80), black);
    EXPECT_EQ(output("B").mirror.mir_sc.get(), swapchain) << "it has the source's size";
    command("output B position 3000 40");
    settle();
    EXPECT_EQ(output("B").mirror.mir_tree->node.x, 3000);
    EXPECT_EQ(output("B").mirror.mir_tree->node.y, 40);
    EVENTUALLY_EQ(pixel("B", 155, 100), red);
}

TEST_F(mirrors, of_an_output_keep_the_last_picture_when_it_is_turned_off)
{
    plug_display("C", 640, 480);
    window &w = red_window(200, 100, {400, 200});
    mirror("B", "output A");
    EVENTUALLY_EQ(pixel("B", 101, 51), red);
    command("output A disable");
    w.fill(blue);
    settle();
    EXPECT_TRUE(is_mirror("B"));
    EXPECT_EQ(pixel("B", 101, 51), red);
    command("output A enable");
    settle();
    goto_workspace(server, record(w).workspace->num);
    EVENTUALLY_EQ(pixel("B", 101, 51), blue);
}

TEST_F(mirrors, of_one_output_may_be_two)
{
    plug_display("C", 640, 352);
    window &w = red_window(200, 100, {400, 200});
    mirror("B", "output A");
    mirror("C", "output A");
    w.fill(blue);
    EVENTUALLY_EQ(pixel("B", 101, 51), blue);
    EVENTUALLY_EQ(pixel("C", 101, 51), blue);
    EXPECT_EQ(g_output_mirror_count, 2);
}

TEST_F(mirrors, of_mirrors_show_what_those_show)
{
    plug_display("C", 320, 176);
    window &w = red_window(200, 100, {400, 200});
    mirror("B", "output A");
    mirror("C", "output B");
    EVENTUALLY_EQ(pixel("C", 51, 26), red);
    w.fill(blue);
    EVENTUALLY_EQ(pixel("C", 51, 26), blue);
}

TEST_F(mirrors, are_of_outputs_that_compose_all_they_show)
{
    static const wlr_output *composed = nullptr;
    static int locks = -1;
    plug({.name = "C", .width = 640, .height = 352, .accepts = [](const wlr_output_state &) {
              locks = composed != nullptr ? composed->attach_render_locks : 0;
              return true;
          }});
    composed = output("C").wlr_output;
    point_at(*pointer, output_layout_box(output("C")).x + 10, 10);
    window &w = map("window");
    mirror("B", "output C");
    w.fill(red);
    settle();
    EXPECT_EQ(locks, 1);
    mirror("B", "off");
    w.fill(blue);
    settle();
    EXPECT_EQ(locks, 0);
    composed = nullptr;
}

// The copy of the pointer

TEST_F(mirrors, show_the_pointer_of_their_source_at_its_place)
{
    mirror("B", "output A");
    point_at(*pointer, 400, 300);
    settle();
    const vantore_mirror &m = output("B").mirror;
    const wlr_box at = pointer_on("B");
    EXPECT_EQ(at.width, std::lround(m.mir_cur_w * 0.5));
    EXPECT_EQ(at.x, std::lround((400 - m.mir_cur_hx) * 0.5));
    EXPECT_EQ(at.y, std::lround((300 - m.mir_cur_hy) * 0.5));
    const std::string key = m.mir_cur_key;
    EXPECT_THAT(key, HasSubstr("n:default@100:"));
    point_at(*pointer, 440, 300);
    settle();
    EXPECT_EQ(pointer_on("B").x, at.x + 20);
    EXPECT_EQ(m.mir_cur_key, key);
}

TEST_F(mirrors, of_a_large_output_show_the_pointer_at_half_its_size)
{
    plug_display("C", 3840, 2160);
    plug_display("D", 1920, 1080);
    mirror("D", "output C");
    point_at(*pointer, output_layout_box(output("C")).x + 1000, 600);
    settle();
    const vantore_mirror &m = output("D").mirror;
    EXPECT_EQ(m.fit.scale, 0.5);
    EXPECT_EQ(m.fit.box.width, 1920);
    EXPECT_EQ(pointer_on("D").width, (m.mir_cur_w + 1) / 2);
}

TEST_F(mirrors, show_the_pointer_in_the_scale_of_their_source)
{
    command("output A scale 2");
    mirror("B", "output A");
    point_at(*pointer, 100, 100);
    settle();
    EXPECT_THAT(output("B").mirror.mir_cur_key, HasSubstr("n:default@200:"));
    const vantore_mirror &m = output("B").mirror;
    EXPECT_EQ(pointer_on("B").x, std::lround((200 - m.mir_cur_hx) * 0.5));
}

TEST_F(mirrors, cut_the_pointer_at_their_edge)
{
    mirror("B", "output A");
    point_at(*pointer, 1279, 703);
    settle();
    const wlr_box corner = pointer_on("B");
    EXPECT_EQ(corner.x + corner.width, 640);
    EXPECT_EQ(corner.y + corner.height, 352);
    EXPECT_LT(corner.width, (output("B").mirror.mir_cur_w + 1) / 2);
    point_at(*pointer, 0, 0);
    settle();
    EXPECT_EQ(pointer_on("B").x, 0);
    EXPECT_EQ(pointer_on("B").y, 0);
}

TEST_F(mirrors, show_no_pointer_that_is_elsewhere)
{
    plug_display("C", 640, 480);
    mirror("B", "output A");
    EXPECT_NE(copy_on("B"), nullptr);
    point_at(*pointer, output_layout_box(output("C")).x + 10, 10);
    settle();
    EXPECT_EQ(copy_on("B"), nullptr);
    point_at(*pointer, 10, 10);
    settle();
    EXPECT_NE(copy_on("B"), nullptr);
}

TEST_F(mirrors, show_the_pointer_that_a_client_has_drawn)
{
    window &w = red_window(200, 100, {400, 200});
    test::seat ears{w.owner()};
    point_at(*pointer, 300, 200);
    settle();
    mirror("B", "output A");
    wl_surface *arrow = w.owner().create_surface("arrow");
    ears.set_cursor(arrow, 4, 6);
    w.owner().paint(arrow, {16, 16}, blue);
    settle();
    point_at(*pointer, 302, 200);
    settle();
    EXPECT_EQ(pointer_on("B"), (wlr_box{149, 97, 8, 8}));
    EVENTUALLY_EQ(pixel("B", 152, 100), blue);
    ears.set_cursor(nullptr, 0, 0);
    settle();
    point_at(*pointer, 304, 200);
    settle();
    EXPECT_EQ(copy_on("B"), nullptr) << "the client hides it";
    w.owner().destroy_surface(arrow);
}

TEST_F(mirrors, show_a_pointer_that_is_part_of_the_picture_once)
{
    plug("C", 640, 352); // it has no plane for the pointer
    mirror("B", "output C");
    point_at(*pointer, output_layout_box(output("C")).x + 100, 100);
    settle();
    EXPECT_EQ(copy_on("B"), nullptr);
    EXPECT_NE(pixel("B", 102, 104), backdrop);
}

// What a mirror of a window shows

TEST_F(mirrors, of_a_window_show_its_content_with_subsurfaces)
{
    window &w = mirrored_window();
    EVENTUALLY_EQ(pixel("B", 5, 5), red);
    EXPECT_EQ(pixel("B", 635, 347), red);
    EXPECT_THAT(world.log(),
                HasSubstr("output B now mirroring window " + std::to_string(record(w).id) + "\n"));
    w.add_subsurface(0, 0, {160, 88});
    w.commit();
    settle();
    w.paint_subsurfaces({160, 88}, blue);
    EVENTUALLY_EQ(pixel("B", 5, 5), blue);
    EXPECT_EQ(pixel("B", 325, 5), red);
    EXPECT_EQ(copy_on("B"), nullptr);
}

TEST_F(mirrors, of_a_window_are_black_where_it_is_translucent)
{
    window &w = mirrored_window();
    w.fill(0);
    EVENTUALLY_EQ(pixel("B", 100, 100), black);
}

TEST_F(mirrors, of_a_window_follow_its_size)
{
    window &w = mirrored_window();
    w.draw({176, 176}, blue);
    EVENTUALLY_EQ(output("B").mirror.fit.box, (wlr_box{144, 0, 352, 352}));
    EVENTUALLY_EQ(pixel("B", 150, 100), blue);
    EXPECT_EQ(pixel("B", 140, 100), black);
}

TEST_F(mirrors, of_a_window_show_it_while_its_workspace_is_hidden)
{
    window &w = red_window(200, 100, {320, 176});
    goto_workspace(server, 5);
    mirror("B", window_source(w));
    EVENTUALLY_EQ(pixel("B", 100, 100), red);
    const int frames = w.frames();
    w.request_frame();
    w.fill(blue);
    EVENTUALLY_EQ(pixel("B", 100, 100), blue);
    EVENTUALLY_EQ(w.frames(), frames + 1); // or the client would draw no more
}

TEST_F(mirrors, of_a_window_go_on_when_it_moves_or_becomes_fullscreen)
{
    window &w = mirrored_window();
    toplevel_set_fullscreen(record(w), true);
    settle();
    w.fill(blue);
    EVENTUALLY_EQ(pixel("B", 320, 176), blue);
    toplevel_set_fullscreen(record(w), false);
    toplevel_set_workspace(record(w), &workspace(7));
    settle();
    w.fill(red);
    EVENTUALLY_EQ(pixel("B", 320, 176), red);
}

TEST_F(mirrors, of_a_window_keep_the_last_picture_while_it_is_unmapped)
{
    window &w = mirrored_window();
    EVENTUALLY_EQ(pixel("B", 100, 100), red);
    w.unmap();
    settle();
    EXPECT_TRUE(is_mirror("B"));
    EXPECT_EQ(pixel("B", 100, 100), red);
    w.open();
    settle();
    w.fill(blue);
    EVENTUALLY_EQ(pixel("B", 100, 100), blue);
}

TEST_F(mirrors, of_a_window_end_with_it)
{
    window &w = mirrored_window();
    w.destroy();
    EVENTUALLY(!is_mirror("B"));
    ASSERT_NE(output("B").current_ws, nullptr);
    EVENTUALLY_EQ(pixel("B", 100, 100), backdrop);
    EXPECT_EQ(g_mirror_any, 0);
}

TEST_F(mirrors, of_a_window_end_when_only_its_surface_is_left)
{
    window &w = mirrored_window();
    w.destroy_role();
    EVENTUALLY(!is_mirror("B"));
    EXPECT_NE(output("B").current_ws, nullptr);
}

TEST_F(mirrors, of_a_window_draw_once_in_a_period_and_miss_nothing)
{
    window &w = mirrored_window();
    advance_clock_ms(100);
    w.fill(blue);
    settle();
    const int64_t drawn = output("B").mirror.mir_last_ns;
    advance_clock_ms(10);
    w.fill(red); // too soon, so the next frame draws it
    EVENTUALLY_EQ(pixel("B", 100, 100), red);
    EXPECT_EQ(output("B").mirror.mir_last_ns, drawn + 10'000'000);
    advance_clock_ms(10);
    w.fill(blue); // too soon after that
    EVENTUALLY_EQ(pixel("B", 100, 100), blue);
    advance_clock_ms(100);
    w.fill(blue);
    EVENTUALLY_EQ(pixel("B", 100, 100), blue);
    EXPECT_GT(output("B").mirror.mir_last_ns, drawn);
}

TEST_F(mirrors, of_x11_windows_end_with_their_surface)
{
    auto &w = map_x11({.x = 200, .y = 100, .width = 320, .height = 176});
    mirror("B", "window " + std::to_string(record(w).id));
    EXPECT_TRUE(is_mirror("B"));
    w.destroy();
    EVENTUALLY(!is_mirror("B"));
}

// The output that is a mirror

TEST_F(mirrors, have_no_workspace_and_no_wallpaper)
{
    vantore_workspace *ws = output("B").current_ws;
    goto_workspace(server, ws->num);
    window &w = map("on B", {300, 200});
    ASSERT_EQ(record(w).workspace, ws);
    mirror("B", "output A");
    EXPECT_EQ(output("B").current_ws, nullptr);
    EXPECT_EQ(ws->output, nullptr);
    EXPECT_EQ(record(w).workspace, ws);
    EXPECT_FALSE(toplevel_visible(record(w)));
    EXPECT_FALSE(has_keyboard(w));
    mirror("B", "off");
    EXPECT_EQ(output("B").current_ws, ws) << "the workspace that was there";
    EXPECT_TRUE(toplevel_visible(record(w)));
    EXPECT_EQ(output("B").mirror.mir_tree, nullptr);
    EXPECT_THAT(world.log(), HasSubstr("output B mirror off\n"));
}

TEST_F(mirrors, keep_the_pointer_out)
{
    point_at(*pointer, 1500, 100); // on B
    mirror("B", "output A");
    EXPECT_EQ(output_at(server, server.cursor->x, server.cursor->y), &output("A"));
    point_at(*pointer, 1600, 300);
    EXPECT_EQ(server.cursor->x, 1279);
    EXPECT_EQ(server.cursor->y, 300);
    mirror("B", "off");
    point_at(*pointer, 1600, 300);
    EXPECT_EQ(server.cursor->x, 1600);
}

TEST_F(mirrors, are_passed_over_by_whatever_looks_for_an_output)
{
    plug_display("C", 640, 480);
    settle();
    mirror("B", "output A");
    window &w = map("window");
    focus_toplevel_ex(&record(w), true);
    move_workspace_to_output(&workspace(3), output("B"));
    EXPECT_EQ(output("B").current_ws, nullptr);
    move_focused_to_adjacent_output(server, 1);
    EXPECT_NE(record(w).workspace->output, nullptr);
    EXPECT_NE(record(w).workspace->output, &output("B"));
    w.request_fullscreen(); // it may name an output
    settle();
    EXPECT_NE(record(w).workspace->output, &output("B"));
    EXPECT_NE(resolve_primary_output(server), &output("B"));
    command("identify 2");
    EXPECT_EQ(output("B").ident_buf, nullptr);
    EXPECT_NE(output("A").ident_buf, nullptr);
    copy_text(workspace(8).pref_output, "B");
    goto_workspace(server, 8);
    EXPECT_EQ(output("B").current_ws, nullptr);
    EXPECT_NE(workspace(8).output, nullptr);
}

TEST_F(mirrors, get_no_panels_that_name_no_output)
{
    mirror("B", "output A"); // the newest output
    const test::layer_surface panel{connect(), test::top_bar(30)};
    settle();
    EXPECT_EQ(output("B").usable.height, 352);
    EXPECT_EQ(output("A").usable.height, 704 - 30);
}

TEST_F(mirrors, have_no_window_that_is_maximized_over_them)
{
    mirror("B", "output A");
    window &w = map("window", {300, 200});
    place(w, 1500, 50); // over B
    toplevel_toggle_maximize(record(w));
    settle();
    EXPECT_LT(box(w).x, 1280);
}

TEST_F(mirrors, end_an_overview_on_their_output)
{
    goto_workspace(server, output("B").current_ws->num);
    map("window");
    overview_toggle(server);
    ASSERT_TRUE(server.overview.active);
    mirror("B", "output A");
    EXPECT_FALSE(server.overview.active);
}

TEST_F(mirrors, may_change_their_source)
{
    window &w = red_window(200, 100, {320, 176});
    mirror("B", "output A");
    mirror("B", window_source(w));
    EXPECT_EQ(g_mirror_any, 1);
    EXPECT_EQ(g_output_mirror_count, 0);
    EVENTUALLY_EQ(pixel("B", 5, 5), red);
    mirror("B", "output A");
    EXPECT_EQ(g_output_mirror_count, 1);
    EVENTUALLY_EQ(pixel("B", 5, 5), backdrop);
}

TEST_F(mirrors, are_told_of_by_the_list_of_outputs)
{
    window &w = red_window(200, 100, {320, 176});
    auto &c = dial();
    mirror("B", "output A");
    EXPECT_THAT(ask(c, VNT_MSG_GET_OUTPUTS), HasSubstr(R"("mirror":{"kind":"screen","output":"A"},"modes")"));
    mirror("B", window_source(w));
    EXPECT_THAT(ask(c, VNT_MSG_GET_OUTPUTS),
                HasSubstr(R"("mirror":{"kind":"window","window":)" + std::to_string(record(w).id) + "}"));
    mirror("B", "off");
    EXPECT_THAT(ask(c, VNT_MSG_GET_OUTPUTS), Not(HasSubstr(R"("mirror":{)")));
}

// Refusals

TEST_F(mirrors, of_themselves_are_refused)
{
    plug_display("C", 640, 480);
    mirror("B", "output B");
    EXPECT_FALSE(is_mirror("B"));
    mirror("B", "output A");
    mirror("C", "output B");
    mirror("A", "output C");
    EXPECT_FALSE(is_mirror("A"));
    mirror("B", "output C");
    EXPECT_EQ(output("B").mirror.source.mir_src_out, "A");
    EXPECT_THAT(notifications_in(world),
                ElementsAre("Can't mirror a screen onto itself", "Can't mirror a screen onto itself",
                            "Can't mirror a screen onto itself"));
}

TEST_F(mirrors, of_a_window_on_their_own_screen_are_refused)
{
    window &w = red_window(200, 100, {320, 176});
    mirror("A", window_source(w));
    EXPECT_FALSE(is_mirror("A"));
    EXPECT_THAT(notifications_in(world), ElementsAre("Can't mirror a window onto its own screen"));
}

TEST_F(mirrors, leave_one_usual_screen)
{
    mirror("B", "output A");
    mirror("A", "output B");
    window &w = map("window");
    goto_workspace(server, 5);
    mirror("A", window_source(w));
    EXPECT_FALSE(is_mirror("A"));
    EXPECT_THAT(notifications_in(world),
                ElementsAre("Can't mirror a screen onto itself", "Can't mirror on the only screen"));
}

TEST_F(mirrors, of_what_is_not_there_are_refused)
{
    map("window");
    mirror("B", "window 99");
    mirror("B", "window 4294967297"); // 1 in 32 bits
    mirror("B", "window");
    mirror("B", "output Z");
    mirror("B", "screen");
    mirror("B", "sideways scale 2");
    EXPECT_FALSE(is_mirror("B"));
    EXPECT_EQ(output("B").wlr_output->scale, 2);
    const std::string log = world.log();
    EXPECT_THAT(log, HasSubstr("IPC output mirror: no window '99'\n"));
    EXPECT_THAT(log, HasSubstr("IPC output mirror: no window '4294967297'\n"));
    EXPECT_THAT(log, HasSubstr("IPC output mirror: no window ''\n"));
    EXPECT_THAT(log, HasSubstr("IPC output mirror: no screen 'Z'\n"));
    EXPECT_THAT(log, HasSubstr("IPC output mirror: no screen ''\n"));
    EXPECT_THAT(log, HasSubstr("IPC output mirror: expected 'window <id>', 'output <name>' or 'off'\n"));
    EXPECT_THAT(notifications_in(world),
                ElementsAre("Mirror: no such window", "Mirror: no such window", "Mirror: no such window",
                            "Mirror: no such screen", "Mirror: no such screen"));
}

// Ends

TEST_F(mirrors, of_an_output_end_when_it_is_unplugged)
{
    vantore_workspace *ws = output("B").current_ws;
    mirror("B", "output A");
    unplug("A");
    settle();
    EXPECT_FALSE(is_mirror("B"));
    EXPECT_EQ(output("B").current_ws, ws);
    EXPECT_EQ(g_mirror_any, 0);
    EXPECT_EQ(g_output_mirror_count, 0);
}

TEST_F(mirrors, may_be_unplugged_with_a_panel_below_them)
{
    mirror("B", "output A");
    test::layer_traits bar = test::top_bar(30);
    bar.output = "B";
    const test::layer_surface panel{connect(), bar};
    settle();
    unplug("B");
    settle();
    EXPECT_EQ(g_mirror_any, 0);
}

TEST_F(mirrors, may_be_unplugged)
{
    red_window(200, 100, {320, 176});
    mirror("B", "output A");
    unplug("B");
    settle();
    EXPECT_EQ(g_mirror_any, 0);
    EXPECT_EQ(g_output_mirror_count, 0);
}

TEST_F(mirrors, of_a_window_end_when_no_other_screen_is_left)
{
    window &w = mirrored_window();
    unplug("A");
    settle();
    EXPECT_FALSE(is_mirror("B"));
    EXPECT_EQ(record(w).workspace->output, &output("B"));
}

TEST_F(mirrors, end_when_the_last_usual_screen_is_turned_off)
{
    mirror("B", "output A");
    command("output A disable");
    settle();
    EXPECT_FALSE(is_mirror("B"));
    EXPECT_NE(output("B").current_ws, nullptr);
}

TEST_F(mirrors, stay_through_a_night)
{
    window &w = red_window(200, 100, {400, 200});
    mirror("B", "output A");
    set_dpms(server, false);
    w.fill(blue);
    settle();
    set_dpms(server, true);
    settle();
    EXPECT_TRUE(is_mirror("B"));
    EVENTUALLY_EQ(pixel("B", 101, 51), blue);
}

TEST_F(mirrors, end_with_the_session)
{
    window &w = red_window(200, 100, {400, 200});
    plug_display("C", 640, 480);
    mirror("B", "output A");
    mirror("C", window_source(w));
    finish();
    EXPECT_EQ(g_mirror_any, 0);
    EXPECT_EQ(g_output_mirror_count, 0);
}
