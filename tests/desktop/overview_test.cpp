// When the overview opens and closes, and what it shows.

#include "support/overview.hpp"

#include "reload.hpp"
#include "session/lock.hpp"
#include "windows/states.hpp"
#include "workspaces/switch.hpp"

using test::window;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

namespace
{

using overview = test::overview_desk;

TEST_F(overview, opens_by_key_and_by_command_and_closes_by_command)
{
    map_windows({"b", "a"});
    keyboard->press(KEY_LEFTMETA);
    keyboard->tap(KEY_A);
    keyboard->release(KEY_LEFTMETA);
    EXPECT_THAT(items(), ElementsAre("a", "b"));
    command("overview");
    EXPECT_TRUE(is_closed());
    command("overview");
    EXPECT_TRUE(server.overview.active);
    command("overview");
    EXPECT_TRUE(is_closed());
}

TEST_F(overview, opens_only_where_the_settings_allow_it_and_always_closes)
{
    map_windows({"a"});
    config("overview = false\n");
    overview_toggle(server);
    EXPECT_TRUE(is_closed());
    config("overview = true\n");
    open();
    config("overview = false\n");
    overview_toggle(server);
    EXPECT_TRUE(is_closed());
}

TEST_F(overview, does_not_open_without_a_window_to_show)
{
    overview_toggle(server);
    EXPECT_TRUE(is_closed());
    map_windows({"a"});
    toplevel_minimize(record(*windows["a"]));
    overview_toggle(server);
    EXPECT_TRUE(is_closed());
}

TEST_F(overview, does_not_open_while_locked_and_ends_when_a_lock_begins)
{
    map_windows({"a"});
    open();
    session_lock_begin(server);
    EXPECT_TRUE(is_closed());
    overview_toggle(server);
    EXPECT_TRUE(is_closed());
    server.locked = false;
}

TEST_F(overview, lies_below_the_lock_screen_and_the_drag_icons_and_above_all_else)
{
    map_windows({"a"});
    open();
    std::vector<const wlr_scene_node *> order;
    for (const auto &node : each<&wlr_scene_node::link>(server.scene->tree.children))
        order.push_back(&node);
    const auto own = std::ranges::find(order, &server.overview.tree->node);
    EXPECT_THAT(std::vector(own, order.end()),
                ElementsAre(*own, &server.lock_tree->node, &server.drag_icon_tree->node));
    overview_exit(server);
}

TEST_F(overview, shows_one_window_in_its_own_size_in_the_middle)
{
    map_windows({"a"});
    open();
    ASSERT_THAT(items(), ElementsAre("a"));
    // Beside the strip of 240, above the title of 26, with margins of 48.
    EXPECT_EQ(item("a").rect, (wlr_box{240 + 420, 48 + 241, 200, 100}));
    EXPECT_EQ(item("a").start, box(*windows["a"]));
    overview_exit(server);
}

TEST_F(overview, lays_five_windows_out_in_rows_of_three_and_two)
{
    map_windows({"e", "d", "c", "b", "a"});
    open();
    EXPECT_THAT(items(), ElementsAre("a", "b", "c", "d", "e"));
    EXPECT_EQ(item("a").rect.y, item("c").rect.y);
    EXPECT_EQ(item("d").rect.y, item("e").rect.y);
    EXPECT_EQ(item("d").rect.x - item("a").rect.x, 161); // half of 298 + 24
    overview_exit(server);
}

TEST_F(overview, shows_only_visible_windows_of_the_outputs_workspace)
{
    map_windows({"minimized", "a"});
    toplevel_minimize(record(*windows["minimized"]));
    goto_workspace(server, 2);
    map_windows({"elsewhere"});
    goto_workspace(server, 1);
    settle();
    open();
    EXPECT_THAT(items(), ElementsAre("a"));
    overview_exit(server);
}

TEST_F(overview, shows_the_64_windows_that_were_raised_last)
{
    test::client &c = connect();
    for (int i = 0; i < 66; i++) {
        window &w = c.create_window("w" + std::to_string(i));
        w.preferred = {40, 30};
        w.open();
    }
    EVENTUALLY(wl_list_length(&server.toplevels) == 66);
    settle();
    open();
    EXPECT_THAT(items(), SizeIs(64));
    EXPECT_EQ(items().front(), "w65");
    EXPECT_EQ(items().back(), "w2");
    overview_exit(server);
}

TEST_F(overview, shows_client_drawn_shadows_neither_in_the_tile_nor_in_its_size)
{
    window &w = connect().create_window("shadowed");
    w.preferred = {300, 200};
    w.geometry(20, 30, 260, 140);
    map(w);
    settle();
    open();
    EXPECT_EQ(item("shadowed").rect.width, 260);
    EXPECT_EQ(item("shadowed").rect.height, 140);
    const wlr_fbox &source = item("shadowed").node->src_box;
    EXPECT_EQ(source.x, 20);
    EXPECT_EQ(source.y, 30);
    EXPECT_EQ(source.width, 260);
    EXPECT_EQ(source.height, 140);
    overview_exit(server);
}

TEST_F(overview, opens_with_its_strip_where_only_another_workspace_has_windows)
{
    map_windows({"a"});
    goto_workspace(server, 2);
    map_windows({"minimized"});
    toplevel_minimize(record(*windows["minimized"]));
    open();
    EXPECT_THAT(items(), IsEmpty());
    EXPECT_THAT(strip(), ElementsAre(1, 2, 3));
    click();
    EXPECT_TRUE(is_closed());
}

TEST_F(overview, strip_has_the_workspaces_with_windows_the_current_one_and_an_empty_one)
{
    goto_workspace(server, 5);
    map_windows({"five"});
    goto_workspace(server, 3);
    open();
    EXPECT_THAT(strip(), ElementsAre(1, 3, 5));
    overview_exit(server);
}

TEST_F(overview, strip_leaves_out_workspaces_of_other_outputs)
{
    map_windows({"a"});
    plug("B", 800, 600); // shows workspace 2
    open();
    EXPECT_THAT(strip(), ElementsAre(1, 3));
    EXPECT_EQ(server.overview.output, &output("A"));
    overview_exit(server);
}

TEST_F(overview, strip_makes_room_for_names)
{
    map_windows({"a"});
    open();
    EXPECT_EQ(server.overview.ws_items[1].box.y - server.overview.ws_items[0].box.y, 112 + 16);
    overview_exit(server);
    write_config("workspaces.conf", "1 = Mail\n");
    config_reload(server);
    open();
    EXPECT_EQ(server.overview.ws_items[1].box.y - server.overview.ws_items[0].box.y, 112 + 20 + 16);
    overview_exit(server);
}

TEST_F(overview, does_not_open_on_a_point_outside_the_outputs)
{
    map_windows({"a"});
    wlr_cursor_warp(server.cursor, nullptr, 5000, 5000);
    unplug("A");
    overview_toggle(server);
    EXPECT_TRUE(is_closed());
}

TEST_F(overview, closes_itself_after_the_last_window)
{
    map_windows({"a"});
    open();
    windows["a"]->destroy();
    EVENTUALLY(is_closed());
}

TEST_F(overview, ends_with_its_output)
{
    plug("B", 800, 600);
    map_windows({"a"});
    open();
    unplug("B");
    EXPECT_TRUE(server.overview.active);
    unplug("A");
    EXPECT_TRUE(is_closed());
}

TEST_F(overview, follows_the_usable_box_of_its_output)
{
    map_windows({"a"});
    open();
    output_state state;
    wlr_output_state_set_scale(&state, 2);
    wlr_output_send_request_state(output("A").wlr_output, &state);
    settle();
    EXPECT_TRUE(server.overview.active);
    EXPECT_EQ(item("a").rect.x + item("a").rect.width / 2, 240 + 400 / 2);
    overview_exit(server);
}

TEST_F(overview, tiles_follow_their_clients_and_keep_no_replaced_buffer)
{
    map_windows({"a"});
    open();
    const wlr_box tile = item("a").rect;
    const uint32_t red = 0xffff0000, green = 0xff00ff00;
    for (const uint32_t color : {red, green}) {
        windows["a"]->fill(color);
        EVENTUALLY_EQ(pixel("A", tile.x + 20, tile.y + 60), color);
    }
    const wlr_surface *surface = tl_surface(record(*windows["a"]));
    const wlr_buffer *before = &surface->buffer->base;
    windows["a"]->fill(red);
    EVENTUALLY_EQ(pixel("A", tile.x + 20, tile.y + 60), red);
    EXPECT_NE(item("a").node->buffer, before);
    windows["a"]->unmap();
    EVENTUALLY(is_closed());
}

TEST_F(overview, keeps_nothing_of_a_window_that_goes_while_it_closes)
{
    config("force_effects = true\n");
    map_windows({"b", "a"});
    open();
    overview_exit(server);
    ASSERT_TRUE(server.overview.closing);
    windows["a"]->destroy_role();
    windows["a"]->commit(); // of the surface, which lives on
    settle();
    ASSERT_TRUE(server.overview.closing);
    EXPECT_THAT(items(), ElementsAre("b"));
}

TEST_F(overview, without_animations_appears_in_place_and_goes_at_once)
{
    config("force_effects = true\nanimations = false\n");
    map_windows({"a"});
    open();
    EXPECT_EQ(item("a").node->opacity, 1);
    EXPECT_EQ(item("a").node->node.x, item("a").rect.x);
    overview_exit(server);
    EXPECT_TRUE(is_closed());
}

TEST_F(overview, creates_no_effect_without_effects)
{
    map_windows({"a"});
    open();
    for (const auto &node : each<&wlr_scene_node::link>(server.overview.tree->children)) {
        EXPECT_NE(node.type, WLR_SCENE_NODE_SHADOW);
        EXPECT_NE(node.type, WLR_SCENE_NODE_BLUR);
    }
    overview_exit(server);
}

} // namespace
