// Outputs that are changed on command, and how the layout is repaired afterwards.

#include "support/notifications.hpp"
#include "support/outputs.hpp"
#include "support/wayland_layer.hpp"

#include "config/settings.hpp"
#include "input/interactive.hpp"
#include "outputs/lookup.hpp"
#include "outputs/output_token.hpp"
#include "outputs/power.hpp"
#include "text.hpp"
#include "windows/placement.hpp"
#include "windows/states.hpp"
#include "workspaces/layout.hpp"

using test::notifications_in;
using test::window;
using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

namespace
{

struct display_commands : test::outputs_desk {
    wlr_box place_of(const std::string &name) { return output_layout_box(output(name)); }
    bool is_lit(const std::string &name) { return output(name).wlr_output->enabled; }
    // Two displays side by side, with modes of the first.
    void plug_two()
    {
        plug({.name = "A",
              .modes = {{.width = 1280, .height = 704, .refresh_mhz = 59940, .preferred = true},
                        {.width = 1280, .height = 704, .refresh_mhz = 60000},
                        {.width = 1280, .height = 704, .refresh_mhz = 75000},
                        {.width = 1920, .height = 1080, .refresh_mhz = 50000},
                        {.width = 1920, .height = 1080, .refresh_mhz = 60000}}});
        plug("B", 800, 600);
        settle();
        (void)heard();
    }
};

TEST_F(display_commands, take_several_steps_and_tell_once)
{
    plug_two();
    command("output A mode 1920x1080@60Hz position 0 0 scale 1.5 transform 180");
    EXPECT_EQ(output("A").wlr_output->current_mode->refresh, 60000);
    EXPECT_EQ(output("A").wlr_output->scale, 1.5F);
    EXPECT_EQ(output("A").wlr_output->transform, WL_OUTPUT_TRANSFORM_180);
    EXPECT_EQ(place_of("A"), (wlr_box{0, 0, 1280, 720}));
    EXPECT_THAT(heard(), ElementsAre(VNT_EVT_OUTPUTS));
}

TEST_F(display_commands, know_outputs_by_name_and_by_id)
{
    plug({.name = "A", .width = 800, .height = 600, .serial = "12/3"});
    plug({.name = "B", .width = 800, .height = 600, .serial = "12/3"});
    const std::string id = output_token_id(*output("A").wlr_output);
    EXPECT_THAT(id, AllOf(HasSubstr("~12_3"), Not(HasSubstr("/"))));
    EXPECT_EQ(resolve_output_token(server, id), &output("B")) << "the first in the list";
    EXPECT_EQ(resolve_output_token(server, "A"), &output("A"));
    EXPECT_EQ(resolve_output_token(server, ""), nullptr);
    command("output " + id + " scale 2");
    EXPECT_EQ(output("B").wlr_output->scale, 2);
    command("output C scale 2");
    EXPECT_THAT(world.log(), HasSubstr("IPC output: unknown output 'C'\n"));
}

TEST_F(display_commands, call_an_output_that_tells_nothing_by_its_name)
{
    plug("A", 800, 600);
    wlr_output &out = *output("A").wlr_output;
    char *none = nullptr;
    const auto make = std::exchange(out.make, none), model = std::exchange(out.model, none),
               serial = std::exchange(out.serial, none);
    EXPECT_EQ(output_token_id(out), "A");
    char display_make[] = "Dell Inc.", display_model[] = "U27/20";
    out.make = display_make;
    out.model = display_model;
    EXPECT_EQ(output_token_id(out), "Dell_Inc_~U27_20~");
    out.make = out.model = none;
    const auto name = std::exchange(out.name, none);
    EXPECT_EQ(output_token_id(out), "?");
    out.name = name;
    out.make = make;
    out.model = model;
    out.serial = serial;
}

TEST_F(display_commands, go_on_after_words_that_mean_nothing)
{
    plug_two();
    command("output A shine scale 2");
    EXPECT_THAT(world.log(), HasSubstr("IPC output: unhandled 'A shine'\n"));
    EXPECT_EQ(output("A").wlr_output->scale, 2);
}

TEST_F(display_commands, choose_the_first_mode_of_a_size_or_the_nearest_rate)
{
    plug_two();
    const auto refresh = [&] { return output("A").wlr_output->current_mode->refresh; };
    command("output A mode 1920x1080");
    EXPECT_EQ(refresh(), 50000);
    command("output A mode 1280x704@60Hz");
    EXPECT_EQ(refresh(), 60000) << "59.94 counts as 59";
    command("output A mode 1280x704@70Hz");
    EXPECT_EQ(refresh(), 75000);
    command("output A mode 1280x704@59Hz");
    EXPECT_EQ(refresh(), 59940);
}

TEST_F(display_commands, make_up_a_mode_that_the_display_does_not_know)
{
    plug_two();
    command("output A mode 2000x1000@75Hz");
    EXPECT_EQ(output("A").wlr_output->current_mode, nullptr);
    EXPECT_EQ(place_of("A"), (wlr_box{0, 0, 2000, 1000}));
    EXPECT_EQ(output("A").wlr_output->refresh, 75000);
    EXPECT_EQ(output("A").usable, (wlr_box{0, 0, 2000, 1000}));
}

TEST_F(display_commands, that_are_refused_leave_the_output_as_it_was)
{
    plug({.name = "A", .width = 800, .height = 600, .accepts = [](const wlr_output_state &s) {
              return (s.committed & WLR_OUTPUT_STATE_MODE) == 0 || s.custom_mode.width != 3000;
          }});
    command("output A mode 3000x1000");
    EXPECT_EQ(place_of("A"), (wlr_box{0, 0, 800, 600}));
    EXPECT_THAT(world.log(), HasSubstr("output A refuses the change"));
}

TEST_F(display_commands, push_an_output_out_of_another_the_shortest_way)
{
    plug_two();
    command("output B position 100 100");
    EXPECT_EQ(place_of("A"), (wlr_box{0, 0, 1280, 704}));
    EXPECT_EQ(place_of("B"), (wlr_box{100, 704, 800, 600}));
    command("output B position 1200 100");
    EXPECT_EQ(place_of("B"), (wlr_box{1280, 100, 800, 600}));
}

TEST_F(display_commands, that_move_an_output_leave_the_others_where_they_are)
{
    plug_two();
    command("output A position 3000 500");
    EXPECT_EQ(place_of("A"), (wlr_box{3000, 500, 1280, 704}));
    EXPECT_EQ(place_of("B"), (wlr_box{1280, 0, 800, 600})) << "a layout that begins right of 0, 0 stays";
}

TEST_F(display_commands, that_move_an_output_take_its_windows_along)
{
    plug_two();
    window &w = map("w", {300, 200});
    place(w, 1380, 50);
    wlr_cursor_warp(server.cursor, nullptr, 1380, 50);
    command("move id:" + std::to_string(record(w).id) + " 2");
    place(w, 1380, 50);
    command("output B position 0 704");
    EXPECT_EQ(toplevel_box(record(w)), (wlr_box{100, 754, 300, 200}));
}

TEST_F(display_commands, shift_a_negative_layout_with_its_windows_and_the_pointer)
{
    plug_two();
    window &w = map("w", {300, 200});
    place(w, 100, 50);
    record(w).float_geo = record(w).saved_geo = {100, 50, 300, 200};
    auto &x = map_x11();
    const wlr_box x_before = box(x);
    wlr_cursor_warp(server.cursor, nullptr, 40, 30);
    command("output B position -800 -20");
    EXPECT_EQ(place_of("B"), (wlr_box{0, 0, 800, 600}));
    EXPECT_EQ(place_of("A"), (wlr_box{800, 20, 1280, 704}));
    EXPECT_EQ(output("A").usable, (wlr_box{800, 20, 1280, 704}));
    EXPECT_EQ(toplevel_box(record(w)), (wlr_box{900, 70, 300, 200}));
    EXPECT_EQ(record(w).float_geo, (wlr_box{900, 70, 300, 200}));
    EXPECT_EQ(record(w).saved_geo, (wlr_box{900, 70, 300, 200}));
    EXPECT_EQ(server.cursor->x, 840);
    EXPECT_EQ(server.cursor->y, 50);
    EXPECT_THAT(world.log(), HasSubstr("anchored live layout to 0,0 (shifted by 800,20)\n"));
    EXPECT_EQ(box(x).x, x_before.x + 800);
    EVENTUALLY_EQ(x.told().y, x_before.y + 20);
}

TEST_F(display_commands, end_a_drag_when_they_shift_the_layout)
{
    plug_two();
    window &w = map("w", {300, 200});
    place(w, 100, 100);
    begin_interactive(record(w), VANTORE_CURSOR_MOVE, 0);
    EXPECT_EQ(server.drag.grabbed_toplevel, &record(w));
    command("output B position -800 0");
    EXPECT_EQ(server.drag.grabbed_toplevel, nullptr);
    EXPECT_EQ(toplevel_box(record(w)).x, 900);
}

TEST_F(display_commands, place_panels_anew_on_an_output_that_is_turned)
{
    plug_two();
    command("output A transform 90");
    EXPECT_EQ(output("A").usable, (wlr_box{0, 0, 704, 1280}));
    EXPECT_EQ(place_of("B").x, 704) << "it is placed by the layout";
    EXPECT_EQ(output("B").usable.x, 704);
    test::layer_surface panel{connect(), test::top_bar(40)}; // on the newest output
    EVENTUALLY_EQ(output("B").usable, (wlr_box{704, 40, 800, 560}));
    command("output B transform 90");
    EVENTUALLY_EQ(output("B").usable, (wlr_box{704, 40, 600, 760}));
}

TEST_F(display_commands, do_not_turn_off_the_only_display)
{
    plug({.name = "A", .width = 800, .height = 600});
    (void)heard();
    command("output A mode 1000x500 disable scale 2");
    EXPECT_TRUE(is_lit("A"));
    EXPECT_EQ(output("A").wlr_output->width, 1000) << "what came before has taken effect";
    EXPECT_EQ(output("A").wlr_output->scale, 1);
    EXPECT_THAT(world.log(), HasSubstr("IPC output: refusing to disable only display 'A'\n"));
    EXPECT_THAT(notifications_in(world), ElementsAre("Can't disable the only display"));
    EXPECT_THAT(heard(), IsEmpty());
}

TEST_F(display_commands, turn_an_output_off_and_on)
{
    plug_two();
    window &w = map("w", {300, 200});
    command("move id:" + std::to_string(record(w).id) + " 2");
    EXPECT_TRUE(toplevel_visible(record(w)));
    command("output B disable");
    EXPECT_FALSE(is_lit("B"));
    EXPECT_EQ(output("B").current_ws, nullptr);
    EXPECT_EQ(workspace(2).output, nullptr);
    EXPECT_THAT(outputs_file(), ElementsAre("B", "A"));
    EXPECT_EQ(keyboard_focus(), nullptr);
    command("output B enable");
    EXPECT_TRUE(is_lit("B"));
    EXPECT_EQ(output("B").current_ws, &workspace(2));
    EXPECT_TRUE(toplevel_visible(record(w)));
    EXPECT_TRUE(has_keyboard(w));
    EVENTUALLY_EQ(pixel("B", 5, 5), 0xff0f121aU);
}

TEST_F(display_commands, turn_off_a_display_twice)
{
    plug_two();
    command("output A disable");
    command("output A disable");
    EXPECT_FALSE(is_lit("A"));
    EXPECT_THAT(world.log(), Not(HasSubstr("refusing")));
    command("output B disable");
    EXPECT_THAT(world.log(), HasSubstr("refusing to disable only display 'B'"));
}

TEST_F(display_commands, keep_the_pointer_off_an_output_that_is_turned_off)
{
    plug_two();
    auto &pointer = plug_pointer();
    point_at(pointer, 1500, 100);
    command("output B disable");
    EXPECT_LT(server.cursor->x, 1280);
    pointer.move(1000, 0);
    EXPECT_EQ(server.cursor->x, 1279);
    command("output B enable");
    pointer.move(100, 0);
    EXPECT_GT(server.cursor->x, 1279);
}

TEST_F(display_commands, turn_a_display_on_again_when_no_other_is_left)
{
    plug_two();
    command("output A disable");
    unplug("B");
    EXPECT_TRUE(is_lit("A"));
    EXPECT_NE(output("A").current_ws, nullptr);
}

TEST_F(display_commands, place_everything_on_a_display_that_moved_while_it_was_off)
{
    plug_two();
    command("output B disable");
    unplug("A");
    EXPECT_TRUE(is_lit("B"));
    EXPECT_EQ(output_layout_box(output("B")).x, 0);
    EXPECT_EQ(output("B").usable, output_layout_box(output("B")));
}

TEST_F(display_commands, do_not_turn_off_the_only_display_while_it_is_dark)
{
    plug_two();
    command("output B disable");
    set_dpms(server, false);
    command("output A disable");
    EXPECT_THAT(world.log(), HasSubstr("refusing to disable only display 'A'"));
    set_dpms(server, true);
    EXPECT_TRUE(is_lit("A"));
}

TEST_F(display_commands, turn_off_the_only_display_that_is_off)
{
    bool accepts = false;
    plug({.name = "A", .width = 800, .height = 600, .accepts = [&](const wlr_output_state &) {
              return accepts;
          }});
    command("output A disable");
    EXPECT_THAT(world.log(), Not(HasSubstr("refusing")));
    accepts = true;
    set_dpms(server, false);
    set_dpms(server, true);
    EXPECT_TRUE(is_lit("A")) << "it is the only one";
}

TEST_F(display_commands, give_no_window_to_a_display_that_is_off_and_lies_below_another)
{
    plug_two();
    command("output A disable");
    command("output B position 0 0");
    EXPECT_EQ(place_of("B"), (wlr_box{0, 0, 800, 600}));
    wlr_cursor_warp(server.cursor, nullptr, 100, 100);
    command("output B scale 1"); // nothing moves the pointer
    EXPECT_EQ(server.cursor->x, 100);
    window &w = map("w", {300, 200});
    EXPECT_EQ(output_showing(record(w)), &output("B"));
    EXPECT_TRUE(toplevel_visible(record(w)));
    toplevel_toggle_maximize(record(w));
    EVENTUALLY_EQ(toplevel_box(record(w)).width, 800);
    command("workspace 5");
    EXPECT_EQ(output("B").current_ws, &workspace(5));
}

TEST_F(display_commands, keep_maximized_windows_on_their_display_when_they_shift_the_layout)
{
    plug_two();
    wlr_cursor_warp(server.cursor, nullptr, 1500, 100);
    window &w = map("w", {300, 200});
    command("move id:" + std::to_string(record(w).id) + " 2");
    toplevel_toggle_maximize(record(w));
    EVENTUALLY_EQ(box(w), (wlr_box{1280, 0, 800, 600}));
    command("output B position -800 -20");
    EVENTUALLY_EQ(box(w), (wlr_box{0, 0, 800, 600}));
    command("output B position 1280 20");
    EVENTUALLY_EQ(box(w).x, output_layout_box(output("B")).x);
}

TEST_F(display_commands, that_move_a_neighbour_take_its_windows_along)
{
    plug_two();
    wlr_cursor_warp(server.cursor, nullptr, 1500, 100);
    window &w = map("w", {300, 200});
    place(w, 1380, 50);
    command("output A transform 90");
    EXPECT_EQ(place_of("B").x, 704);
    EXPECT_EQ(toplevel_box(record(w)), (wlr_box{804, 50, 300, 200}));
}

TEST_F(display_commands, that_go_on_for_ever_leave_displays_within_reach)
{
    plug_two();
    for (int i = 0; i < 20; i++)
        command("output B position -1000000 0");
    EXPECT_LT(place_of("A").x, 4'100'000);
    EXPECT_LT(place_of("B").x, 4'100'000);
    EXPECT_EQ(output("A").usable, place_of("A"));
    EXPECT_EQ(output("B").usable, place_of("B"));
}

TEST_F(display_commands, leave_an_output_off_when_all_are_turned_on)
{
    plug_two();
    command("output B disable");
    set_dpms(server, false);
    set_dpms(server, true);
    EXPECT_TRUE(is_lit("A"));
    EXPECT_FALSE(is_lit("B"));
}

TEST_F(display_commands, light_nothing_while_all_displays_are_dark)
{
    plug_two();
    command("output B disable");
    set_dpms(server, false);
    command("output B enable");
    EXPECT_FALSE(is_lit("B"));
    set_dpms(server, true);
    EXPECT_TRUE(is_lit("B"));
    EXPECT_NE(output("B").current_ws, nullptr);
}

TEST_F(display_commands, bring_maximized_tiled_and_fullscreen_windows_along)
{
    plug_two();
    window &w = map("w", {300, 200});
    toplevel_toggle_maximize(record(w));
    command("output A mode 1920x1080");
    EVENTUALLY_EQ(toplevel_box(record(w)).width, 1920);
    w.request_fullscreen();
    EVENTUALLY_EQ(box(w), (wlr_box{0, 0, 1920, 1080}));
    command("output A mode 1280x704");
    EVENTUALLY_EQ(box(w), (wlr_box{0, 0, 1280, 704}));
}

TEST_F(display_commands, without_steps_do_nothing)
{
    plug_two();
    command("output");
    command("output A");
    EXPECT_THAT(heard(), IsEmpty());
}

TEST_F(display_commands, name_the_primary_output)
{
    plug_two();
    EXPECT_EQ(resolve_primary_output(server), &output("B"));
    copy_text(g_primary_pref, "A");
    EXPECT_EQ(resolve_primary_output(server), &output("A"));
    copy_text(g_primary_pref, output_token_id(*output("A").wlr_output));
    EXPECT_NE(resolve_primary_output(server), nullptr);
    copy_text(g_primary_pref, "A");
    command("output A disable");
    EXPECT_EQ(resolve_primary_output(server), &output("B"));
}

} // namespace
