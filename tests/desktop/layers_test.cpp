// Panels, docks, wallpapers and overlays, and what they leave for windows.

#include "support/desktop.hpp"
#include "support/wayland_layer.hpp"
#include "support/wayland_popup.hpp"
#include "support/wayland_seat.hpp"

#include "config/settings.hpp"
#include "input/hit_test.hpp"
#include "outputs/power.hpp"
#include "windows/layer.hpp"
#include "workspaces/focus.hpp"

#include <limits>
#include <linux/input-event-codes.h>

using test::ALL_EDGES;
using test::BOTTOM;
using test::desktop;
using test::keyboard_wish;
using test::layer;
using test::layer_surface;
using test::layer_traits;
using test::LEFT;
using test::RIGHT;
using test::TOP;
using test::top_bar;
using test::window;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

static constexpr uint32_t blue = 0xff3060c0, red = 0xffc03030, green = 0xff30c030;

// An output of 1280x704.
struct layers : test::desktop {
    void SetUp() override
    {
        desktop::SetUp();
        plug("A", 1280, 704);
    }

    void TearDown() override
    {
        surfaces.clear();
        desktop::TearDown();
    }

    // Of a client of its own.
    layer_surface &create(const layer_traits &traits) { return create(connect(), traits); }

    layer_surface &create(test::client &owner, const layer_traits &traits)
    {
        layer_surface &l = surfaces.emplace_back(owner, traits);
        settle();
        return l;
    }

    // The same, and waits until it is mapped.
    layer_surface &show(const layer_traits &traits)
    {
        layer_surface &l = create(traits);
        EVENTUALLY(find(l) != nullptr && find(l)->layer_surface->surface->mapped);
        return l;
    }

    vantore_layer_surface *find(const layer_surface &l)
    {
        for (auto &record : each<&vantore_layer_surface::link>(server.layer_surfaces)) {
            wl_resource *resource = record.layer_surface->surface->resource;
            if (wl_resource_get_client(resource) == server_side(l.owner()) &&
                wl_resource_get_id(resource) == l.surface_id())
                return &record;
        }
        return nullptr;
    }

    // Its place and its size on the screen.
    wlr_box box(const layer_surface &l)
    {
        const vantore_layer_surface *record = find(l);
        if (record == nullptr)
            return {};
        const wlr_scene_node &node = record->scene->tree->node;
        const wlr_surface_state &shown = record->layer_surface->surface->current;
        return {.x = node.x, .y = node.y, .width = shown.width, .height = shown.height};
    }

    bool has_keyboard(const layer_surface &l)
    {
        const vantore_layer_surface *record = find(l);
        return record != nullptr &&
               server.seat->keyboard_state.focused_surface == record->layer_surface->surface;
    }

    bool has_keyboard(const window &w)
    {
        return server.seat->keyboard_state.focused_surface == tl_surface(record(w));
    }

    wlr_box usable(const char *name = "A") { return output(name).usable; }

    std::vector<std::string> broken_rules()
    {
        std::vector<std::string> rules = test::server_check(server, active_windows);
        std::ranges::move(test::usable_check(server), std::back_inserter(rules));
        return rules;
    }

    std::list<layer_surface> surfaces;
};

TEST_F(layers, are_shown_where_they_are_anchored)
{
    layer_surface &l =
        show({.size = {200, 100}, .anchor = BOTTOM | RIGHT, .margins = {.right = 10, .bottom = 20}});
    EXPECT_EQ(box(l), (wlr_box{1280 - 200 - 10, 704 - 100 - 20, 200, 100}));
    EVENTUALLY_EQ(pixel("A", 1100, 600), blue);
}

TEST_F(layers, count_from_the_corner_of_their_output)
{
    plug("B", 640, 640);
    layer_surface &l = show({.output = "B", .size = {0, 40}, .anchor = TOP | LEFT | RIGHT});
    EXPECT_EQ(box(l), (wlr_box{1280, 0, 640, 40}));
}

TEST_F(layers, are_logged_with_their_namespace_and_layer)
{
    create({.name = "wallpaper", .on = layer::background, .size = {10, 10}});
    EXPECT_THAT(world.log(), HasSubstr("vantore-comp: layer surface 'wallpaper' on layer 0\n"));
}

TEST_F(layers, are_listed_newest_first_and_known_by_their_surface)
{
    layer_surface &first = create({.size = {10, 10}});
    layer_surface &second = create({.size = {10, 10}});
    EXPECT_EQ(each<&vantore_layer_surface::link>(server.layer_surfaces).first(), find(second));
    EXPECT_EQ(find(first)->layer_surface->data, find(first));
}

TEST_F(layers, hang_in_the_tree_of_the_layer_that_they_asked_for)
{
    for (const uint32_t number : {0U, 1U, 2U, 3U}) {
        layer_surface &l = create({.on = layer{number}, .size = {10, 10}});
        EXPECT_EQ(find(l)->scene->tree->node.parent, server.layers[number]) << number;
    }
}

TEST_F(layers, of_a_number_that_no_layer_has_are_a_protocol_error)
{
    layer_surface &l = create({.on = layer{4}, .size = {10, 10}});
    EVENTUALLY_EQ(l.owner().protocol_error(), (test::protocol_error{"zwlr_layer_shell_v1", 1}));
    EXPECT_TRUE(wl_list_empty(&server.layer_surfaces));
}

TEST_F(layers, stay_in_their_tree_when_they_change_their_layer)
{
    layer_surface &l = show({.on = layer::bottom, .size = {10, 10}});
    l.move_to(layer::overlay);
    l.commit();
    settle();
    EXPECT_EQ(find(l)->layer_surface->current.layer, ZWLR_LAYER_SHELL_V1_LAYER_OVERLAY);
    EXPECT_EQ(find(l)->scene->tree->node.parent, server.layers[1]);
}

TEST_F(layers, lie_below_or_above_windows)
{
    window &w = map("page", {400, 300});
    place(w, 0, 0);
    w.fill(green);
    show({.on = layer::bottom, .size = {200, 100}, .anchor = TOP | LEFT, .argb = red});
    EVENTUALLY_EQ(pixel("A", 50, 50), green);
    show({.on = layer::top, .size = {200, 100}, .anchor = TOP | LEFT, .argb = blue});
    EVENTUALLY_EQ(pixel("A", 50, 50), blue);
}

TEST_F(layers, without_an_output_of_their_choice_go_to_the_newest)
{
    plug("B", 640, 640);
    layer_surface &l = show({.size = {10, 10}});
    EXPECT_EQ(find(l)->layer_surface->output, output("B").wlr_output);
    layer_surface &other = show({.output = "A", .size = {10, 10}});
    EXPECT_EQ(find(other)->layer_surface->output, output("A").wlr_output);
}

TEST_F(desktop, closes_layer_surfaces_at_once_when_there_is_no_output)
{
    layer_surface l{connect(), top_bar(40)};
    EVENTUALLY(l.closed());
    EXPECT_EQ(l.owner().error(), 0);
    EXPECT_TRUE(wl_list_empty(&server.layer_surfaces));
}

TEST_F(layers, are_told_their_size_with_their_first_commit_and_not_before)
{
    layer_traits traits = top_bar(40);
    traits.opens = false;
    layer_surface &l = create(traits);
    map("page"); // a reason to arrange
    EXPECT_EQ(l.configure_count(), 0);
    l.commit();
    EVENTUALLY_EQ(l.configure_count(), 1);
    EXPECT_EQ(l.last_size(), (test::size{1280, 40}));
}

// Each draws at each configure.
TEST_F(layers, rest_once_they_have_their_size)
{
    layer_surface &panel = show(top_bar(40));
    layer_surface &wallpaper = show({.on = layer::background, .anchor = ALL_EDGES, .zone = -1});
    settle();
    const int panel_before = panel.configure_count(), wallpaper_before = wallpaper.configure_count();
    panel.draw({1280, 40});
    wallpaper.draw({1280, 704});
    settle();
    EXPECT_EQ(panel.configure_count(), panel_before);
    EXPECT_EQ(wallpaper.configure_count(), wallpaper_before);
}

TEST_F(layers, are_answered_when_they_change_their_wishes)
{
    layer_surface &l = show({.size = {200, 100}});
    const int before = l.configure_count();
    l.anchor(TOP);
    l.commit();
    EVENTUALLY_EQ(l.configure_count(), before + 1);
    l.size(300, 50);
    l.commit();
    EVENTUALLY_EQ(box(l), (wlr_box{490, 0, 300, 50}));
}

TEST_F(layers, may_be_unmapped_and_shown_again)
{
    layer_surface &l = show(top_bar(40));
    l.unmap();
    settle();
    EXPECT_EQ(usable(), (wlr_box{0, 0, 1280, 704}));
    const int before = l.configure_count();
    l.commit();
    EVENTUALLY_EQ(l.configure_count(), before + 1);
    EVENTUALLY_EQ(usable(), (wlr_box{0, 40, 1280, 664}));
    EXPECT_EQ(l.owner().error(), 0);
}

// The zones

TEST_F(layers, reserve_their_zone_from_their_map_to_their_unmap)
{
    layer_traits traits = top_bar(40);
    traits.opens = false;
    layer_surface &l = create(traits);
    l.auto_draw = false;
    l.commit();
    EVENTUALLY_EQ(l.configure_count(), 1);
    EXPECT_EQ(usable(), (wlr_box{0, 0, 1280, 704}));
    l.draw({1280, 40});
    EVENTUALLY_EQ(usable(), (wlr_box{0, 40, 1280, 664}));
    l.unmap();
    EVENTUALLY_EQ(usable(), (wlr_box{0, 0, 1280, 704}));
}

TEST_F(layers, reserve_zones_at_every_edge_margins_included)
{
    show(top_bar(40));
    show({.size = {0, 30}, .anchor = BOTTOM | LEFT | RIGHT, .zone = 30, .margins = {.top = 99, .bottom = 5}});
    show({.size = {60, 0}, .anchor = LEFT | TOP | BOTTOM, .zone = 60});
    show({.size = {50, 60}, .anchor = RIGHT, .zone = 50, .margins = {.right = 1}});
    EXPECT_EQ(usable(), (wlr_box{60, 40, 1280 - 60 - 51, 704 - 40 - 35}));
}

TEST_F(layers, in_a_corner_or_between_edges_reserve_nothing)
{
    show({.size = {100, 40}, .anchor = TOP | LEFT, .zone = 40});
    show({.size = {100, 40}, .zone = 40});
    EXPECT_EQ(usable(), (wlr_box{0, 0, 1280, 704}));
}

TEST_F(layers, that_reserve_nothing_are_placed_below_a_panel_that_comes_later)
{
    layer_surface &second = show({.size = {0, 30}, .anchor = TOP | LEFT | RIGHT});
    EXPECT_EQ(box(second), (wlr_box{0, 0, 1280, 30}));
    show(top_bar(40));
    EXPECT_EQ(box(second), (wlr_box{0, 40, 1280, 30}));
    EXPECT_EQ(usable(), (wlr_box{0, 40, 1280, 664}));
}

TEST_F(layers, that_reserve_nothing_are_placed_below_a_panel_that_was_there)
{
    show(top_bar(40));
    layer_surface &second = show({.size = {0, 30}, .anchor = TOP | LEFT | RIGHT});
    EXPECT_EQ(box(second), (wlr_box{0, 40, 1280, 30}));
}

TEST_F(layers, with_a_zone_of_minus_one_cover_the_zones_of_others)
{
    layer_surface &wallpaper = show({.on = layer::background, .anchor = ALL_EDGES, .zone = -1});
    layer_surface &notes = show({.on = layer::bottom, .anchor = ALL_EDGES});
    show(top_bar(40));
    EVENTUALLY_EQ(box(notes), (wlr_box{0, 40, 1280, 664}));
    EXPECT_EQ(box(wallpaper), (wlr_box{0, 0, 1280, 704}));
    EXPECT_EQ(usable(), (wlr_box{0, 40, 1280, 664}));
}

TEST_F(layers, with_zones_at_the_same_edge_stack_the_newest_outermost)
{
    layer_surface &first = show(top_bar(40));
    layer_surface &second = show(top_bar(20));
    EXPECT_EQ(box(second), (wlr_box{0, 0, 1280, 20}));
    EXPECT_EQ(box(first), (wlr_box{0, 20, 1280, 40}));
    EXPECT_EQ(usable(), (wlr_box{0, 60, 1280, 644}));
}

TEST_F(layers, leave_other_outputs_alone)
{
    plug("B", 640, 640);
    layer_traits traits = top_bar(40);
    traits.output = "A";
    show(traits);
    EXPECT_EQ(usable("A"), (wlr_box{0, 40, 1280, 664}));
    EXPECT_EQ(usable("B"), (wlr_box{1280, 0, 640, 640}));
}

TEST_F(layers, make_room_for_windows_to_open_in)
{
    show(top_bar(100));
    EXPECT_EQ(toplevel_box(record(map("page", {640, 300}))), (wlr_box{320, 100 + 152, 640, 300}));
}

TEST_F(layers, leave_what_is_usable_for_maximized_windows)
{
    show(top_bar(40));
    window &w = connect().create_window("page");
    w.title("page");
    w.request_maximize();
    map(w);
    EVENTUALLY_EQ(toplevel_box(record(w)), (wlr_box{0, 40, 1280, 664}));
}

// A window that has got lost is brought back when its workspace is arranged.
TEST_F(layers, arrange_the_workspace_only_when_the_usable_box_changes)
{
    layer_surface &panel = show(top_bar(40));
    window &lost = map("lost", {200, 100});
    place(lost, -5000, 0);
    panel.draw({1280, 40});
    panel.commit();
    settle();
    EXPECT_EQ(toplevel_box(record(lost)).x, -5000);
    panel.zone(50);
    panel.commit();
    EVENTUALLY_EQ(usable(), (wlr_box{0, 50, 1280, 654}));
    EXPECT_EQ(toplevel_box(record(lost)).x, 540);
    place(lost, -5000, 0);
    panel.destroy();
    EVENTUALLY_EQ(toplevel_box(record(lost)).x, 540);
    EXPECT_EQ(usable(), (wlr_box{0, 0, 1280, 704}));
}

TEST_F(layers, that_go_or_hide_give_their_space_back_to_the_tiles)
{
    g_gap = 8;
    command("ws-layout 1 tiling");
    window &tile = map("tile");
    EVENTUALLY_EQ(toplevel_box(record(tile)), (wlr_box{8, 8, 1264, 688}));
    layer_surface &panel = show(top_bar(40));
    EVENTUALLY_EQ(toplevel_box(record(tile)), (wlr_box{8, 48, 1264, 648}));
    panel.unmap();
    EVENTUALLY_EQ(toplevel_box(record(tile)), (wlr_box{8, 8, 1264, 688}));
    layer_surface &dock = show({.size = {100, 0}, .anchor = LEFT | TOP | BOTTOM, .zone = 100});
    EVENTUALLY_EQ(toplevel_box(record(tile)), (wlr_box{108, 8, 1164, 688}));
    dock.owner().vanish();
    EVENTUALLY_EQ(toplevel_box(record(tile)), (wlr_box{8, 8, 1264, 688}));
}

TEST_F(layers, that_take_everything_leave_the_whole_output_to_ask_for)
{
    show({.size = {0, 40}, .anchor = TOP | LEFT | RIGHT, .zone = 5000});
    EXPECT_EQ(usable(), (wlr_box{0, 704, 1280, 0}));
    EXPECT_EQ(output_usable_at(server, 10, 10), (wlr_box{0, 0, 1280, 704}));
    EXPECT_EQ(output_usable_at(server, -10, 10), (wlr_box{}));
}

TEST_F(layers, that_take_everything_take_it_where_their_output_moves_to)
{
    plug("B", 640, 640);
    show({.output = "B", .size = {0, 40}, .anchor = TOP | LEFT | RIGHT, .zone = 5000});
    EXPECT_EQ(usable("B"), (wlr_box{1280, 640, 640, 0}));
    test::unplug(test::made_up(output("A").wlr_output));
    EXPECT_EQ(usable("B"), (wlr_box{0, 640, 640, 0}));
}

TEST_F(layers, on_an_output_that_is_off_wait_until_it_is_on_again)
{
    layer_surface &panel = show(top_bar(40));
    set_dpms(server, false);
    panel.zone(60);
    panel.commit();
    layer_surface &late = create(top_bar(20));
    settle();
    EXPECT_EQ(usable(), (wlr_box{0, 40, 1280, 664}));
    EXPECT_EQ(late.configure_count(), 0);
    set_dpms(server, true);
    EVENTUALLY_EQ(usable(), (wlr_box{0, 80, 1280, 624}));
    EXPECT_EQ(late.configure_count(), 1);
}

TEST_F(layers, of_an_output_that_goes_are_closed_and_not_moved)
{
    plug("B", 640, 640);
    layer_traits traits = top_bar(40);
    traits.output = "B";
    layer_surface &panel = show(traits);
    layer_traits of_a = top_bar(30);
    of_a.output = "A";
    layer_surface &other = show(of_a);
    test::unplug(test::made_up(output("B").wlr_output));
    EVENTUALLY(panel.closed());
    EXPECT_FALSE(other.closed());
    EXPECT_EQ(wl_list_length(&server.layer_surfaces), 1);
    EXPECT_EQ(usable("A"), (wlr_box{0, 30, 1280, 674}));
    panel.commit();
    panel.draw({640, 40});
    panel.zone(10);
    settle();
    EXPECT_EQ(panel.owner().error(), 0);
}

TEST_F(layers, that_name_an_output_that_has_gone_meanwhile_go_to_another)
{
    plug("B", 640, 640);
    test::client &c = connect();
    test::unplug(test::made_up(output("B").wlr_output));
    layer_traits traits = top_bar(40);
    traits.output = "B"; // the client has not heard yet
    layer_surface &l = create(c, traits);
    EVENTUALLY_EQ(usable("A"), (wlr_box{0, 40, 1280, 664}));
    EXPECT_EQ(l.owner().error(), 0);
}

TEST_F(layers, follow_their_output_when_its_place_or_size_changes)
{
    plug("B", 640, 640);
    layer_traits traits = top_bar(40);
    traits.output = "B";
    layer_surface &panel = show(traits);
    test::unplug(test::made_up(output("A").wlr_output));
    EVENTUALLY_EQ(box(panel), (wlr_box{0, 0, 640, 40}));
    EXPECT_EQ(usable("B"), (wlr_box{0, 40, 640, 600}));
}

// Which of them is on top

struct panels : layers {
    // The top layer's surfaces, from top to bottom.
    std::vector<std::string> on_top()
    {
        std::vector<std::string> names;
        wlr_scene_node *node = nullptr;
        wl_list_for_each_reverse(node, &server.layers[2]->children,
                                 link) for (auto &l :
                                            each<&vantore_layer_surface::link>(
                                                server.layer_surfaces)) if (&l.scene->tree->node == node)
            names.emplace_back(l.layer_surface->namespace_);
        return names;
    }
};

TEST_F(panels, stay_above_whatever_comes_to_the_top_layer_later)
{
    show({.name = "vantore-panel", .size = {10, 10}});
    show({.name = "dock", .size = {10, 10}});
    show({.name = "launcher", .size = {10, 10}});
    EXPECT_THAT(on_top(), ElementsAre("vantore-panel", "launcher", "dock"));
}

TEST_F(panels, are_not_raised_by_surfaces_of_other_layers)
{
    show({.name = "vantore-panel", .size = {10, 10}});
    layer_surface &dock = show({.name = "dock", .size = {10, 10}});
    wlr_scene_node_raise_to_top(&find(dock)->scene->tree->node);
    show({.name = "overlay", .on = layer::overlay, .size = {10, 10}});
    EXPECT_THAT(on_top(), ElementsAre("dock", "vantore-panel"));
}

TEST_F(panels, are_told_by_their_whole_namespace)
{
    show({.name = "vantore-panel-clock", .size = {10, 10}});
    show({.name = "dock", .size = {10, 10}});
    EXPECT_THAT(on_top(), ElementsAre("dock", "vantore-panel-clock"));
}

// The keyboard

struct layers_with_keyboard : layers, testing::WithParamInterface<keyboard_wish> {
    void SetUp() override
    {
        layers::SetUp();
        plug_keyboard();
        active_windows = test::activity::may_lag;
    }

    static layer_traits launcher()
    {
        return {.name = "launcher", .on = layer::overlay, .size = {300, 200}, .keyboard = GetParam()};
    }
};

INSTANTIATE_TEST_SUITE_P(either, layers_with_keyboard,
                         testing::Values(keyboard_wish::exclusive, keyboard_wish::on_demand));

TEST_P(layers_with_keyboard, take_it_and_give_it_back)
{
    window &page = map("page");
    test::seat ears{page.owner()};
    settle();
    (void)heard();
    layer_surface &l = show(launcher());
    EXPECT_TRUE(has_keyboard(l));
    EVENTUALLY(ears.heard("keys leave page"));
    l.destroy();
    EVENTUALLY(has_keyboard(page));
    EVENTUALLY(ears.heard("keys enter page"));
}

TEST_P(layers_with_keyboard, hear_the_keys)
{
    test::client &c = connect();
    test::seat ears{c};
    settle();
    layer_surface &l = create(c, launcher());
    EVENTUALLY(has_keyboard(l));
    test::made_up_keyboard &keys = plug_keyboard("another");
    keys.tap(KEY_A);
    EVENTUALLY(ears.heard("key down 30"));
}

TEST_P(layers_with_keyboard, leave_the_window_its_active_look)
{
    window &page = map("page");
    show(launcher());
    settle();
    EXPECT_TRUE(page.has(test::ACTIVATED));
}

TEST_P(layers_with_keyboard, lose_it_to_a_window_and_take_it_back_with_their_next_commit)
{
    layer_surface &l = show(launcher());
    window &page = map("page");
    EXPECT_TRUE(has_keyboard(page));
    l.commit();
    EVENTUALLY(has_keyboard(l));
}

TEST_P(layers_with_keyboard, get_nothing_before_they_are_mapped)
{
    window &page = map("page");
    layer_traits traits = launcher();
    traits.opens = false;
    layer_surface &l = create(traits);
    l.auto_draw = false;
    l.commit();
    EVENTUALLY_EQ(l.configure_count(), 1);
    settle();
    EXPECT_TRUE(has_keyboard(page));
}

TEST_P(layers_with_keyboard, give_it_back_when_they_do_not_want_it_any_more)
{
    window &page = map("page");
    layer_surface &l = show(launcher());
    l.keyboard(keyboard_wish::none);
    l.commit();
    EVENTUALLY(has_keyboard(page));
}

TEST_P(layers_with_keyboard, give_it_back_when_they_are_unmapped)
{
    window &page = map("page");
    layer_surface &l = show(launcher());
    l.unmap();
    EVENTUALLY(has_keyboard(page));
    EXPECT_EQ(l.owner().error(), 0);
}

TEST_P(layers_with_keyboard, give_it_back_when_their_output_goes)
{
    window &page = map("page");
    plug("B", 640, 640);
    layer_traits traits = launcher();
    traits.output = "B";
    layer_surface &l = show(traits);
    EXPECT_TRUE(has_keyboard(l));
    test::unplug(test::made_up(output("B").wlr_output));
    EXPECT_TRUE(has_keyboard(page));
}

TEST_P(layers_with_keyboard, that_go_without_having_it_leave_the_focus_alone)
{
    window &low = map("low");
    layer_surface &l = show(launcher());
    map("high");
    focus_toplevel_ex(&record(low), false);
    l.destroy();
    settle();
    EXPECT_TRUE(has_keyboard(low));
}

TEST_P(layers_with_keyboard, keep_it_where_no_window_is_there_to_take_it)
{
    layer_surface &l = show(launcher());
    l.unmap();
    settle();
    EXPECT_TRUE(has_keyboard(l));
    window &page = map("page");
    EXPECT_TRUE(has_keyboard(page));
}

TEST_P(layers_with_keyboard, do_not_take_it_while_the_session_is_locked)
{
    window &page = map("page");
    server.locked = true;
    layer_surface &l = show(launcher());
    l.commit();
    settle();
    EXPECT_TRUE(has_keyboard(page));
    EXPECT_EQ(box(l).width, 300); // it is arranged all the same
    server.locked = false;
    l.commit();
    EVENTUALLY(has_keyboard(l));
}

TEST_P(layers_with_keyboard, that_have_it_when_the_session_is_locked_do_not_hand_it_to_a_window)
{
    map("page");
    layer_surface &l = show(launcher());
    server.locked = true;
    l.keyboard(keyboard_wish::none);
    l.commit();
    settle();
    EXPECT_TRUE(has_keyboard(l));
    server.locked = false;
}

TEST_P(layers_with_keyboard, take_it_past_an_open_menu)
{
    window &page = map("page", {400, 300});
    place(page, 100, 100);
    test::made_up_pointer &pointer = plug_pointer();
    test::seat ears{page.owner()};
    settle();
    point_at(pointer, 110, 120);
    pointer.press(BTN_LEFT);
    settle();
    test::popup menu{page, {.x = 20, .y = 30}, test::popup::draws::always, &ears, ears.press_serial()};
    EVENTUALLY_EQ(menu.configure_count(), 1);
    pointer.release(BTN_LEFT);
    layer_surface &l = show(launcher());
    EVENTUALLY(has_keyboard(l));
}

TEST_F(layers, without_a_wish_for_the_keyboard_do_not_get_it)
{
    window &page = map("page");
    show(top_bar(40));
    EXPECT_TRUE(has_keyboard(page));
}

TEST_F(layers, get_the_keyboard_also_where_there_is_none)
{
    layer_surface &l = show({.size = {10, 10}, .keyboard = keyboard_wish::exclusive});
    EXPECT_TRUE(has_keyboard(l));
}

// The pointer

struct pointed_layers : layers {
    void SetUp() override
    {
        layers::SetUp();
        pointer = &plug_pointer();
        window &low_window = map("low", {400, 300});
        place(low_window, 0, 100);
        low = &low_window;
        high = &map("high", {400, 300});
        place(*high, 600, 100);
        panel = &show({.size = {200, 200}, .anchor = TOP | LEFT}); // covers a part of low
        ears = std::make_unique<test::seat>(panel->owner());
        settle();
    }

    void TearDown() override
    {
        ears.reset();
        layers::TearDown();
    }

    test::made_up_pointer *pointer = nullptr;
    window *low = nullptr, *high = nullptr;
    layer_surface *panel = nullptr;
    std::unique_ptr<test::seat> ears;
};

TEST_F(pointed_layers, hear_the_pointer_and_belong_to_no_window)
{
    point_at(*pointer, 50, 150);
    EVENTUALLY(ears->heard("pointer enter panel 50,150"));
    surface_hit hit;
    EXPECT_EQ(desktop_toplevel_at(server, 50, 150, hit), nullptr);
    EXPECT_EQ(hit.surface, find(*panel)->layer_surface->surface);
}

TEST_F(pointed_layers, hold_presses_to_themselves)
{
    point_at(*pointer, 50, 150);
    pointer->click(BTN_LEFT);
    EVENTUALLY(ears->heard("button up 272"));
    EXPECT_TRUE(has_keyboard(*high));
    point_at(*pointer, 300, 150);
    pointer->click(BTN_LEFT);
    EXPECT_TRUE(has_keyboard(*low));
}

TEST_F(pointed_layers, are_told_from_windows)
{
    EXPECT_TRUE(grabbing_layer_at(server, 50, 150));
    EXPECT_FALSE(grabbing_layer_at(server, 300, 150));
    EXPECT_FALSE(grabbing_layer_at(server, 1200, 600));
}

TEST_F(pointed_layers, may_go_while_the_pointer_is_in_them)
{
    point_at(*pointer, 50, 150);
    pointer->press(BTN_LEFT);
    EVENTUALLY(ears->heard("button down 272"));
    panel->destroy();
    settle();
    pointer->release(BTN_LEFT);
    point_at(*pointer, 60, 160);
    settle();
    EXPECT_EQ(server.seat->pointer_state.focused_surface, tl_surface(record(*low)));
}

// Popups

TEST_F(layers, have_popups_without_a_scene_node)
{
    layer_surface &panel = show(top_bar(40));
    const int nodes_before = wl_list_length(&find(panel)->scene->tree->children);
    test::popup menu{panel, {.x = 20, .y = 30}};
    settle();
    EXPECT_EQ(menu.configure_count(), 0);
    EXPECT_EQ(wl_list_length(&find(panel)->scene->tree->children), nodes_before);
    panel.destroy();
    EVENTUALLY(menu.dismissed());
    EXPECT_EQ(panel.owner().error(), 0);
}

TEST_F(layers, can_not_adopt_the_menu_of_a_window)
{
    window &w = map("page");
    layer_surface &panel = create(w.owner(), top_bar(40));
    test::popup menu{w, {.x = 20, .y = 30}};
    panel.adopt(menu.get());
    EVENTUALLY(w.owner().protocol_error().has_value());
    settle();
    EXPECT_THAT(broken_rules(), IsEmpty());
}

TEST_F(layers, that_adopt_a_menu_that_was_dismissed_are_harmless)
{
    window &w = map("page");
    layer_surface &panel = create(w.owner(), top_bar(40));
    test::popup menu{w, {.x = 20, .y = 30}};
    EVENTUALLY_EQ(menu.configure_count(), 1);
    w.unmap();
    EVENTUALLY(menu.dismissed());
    panel.adopt(menu.get());
    settle();
    EXPECT_THAT(broken_rules(), IsEmpty());
}

// Hostile clients

struct hostile_layers : layers {
    static constexpr int lowest = std::numeric_limits<int>::min();
    static constexpr int highest = std::numeric_limits<int>::max();
};

// The protocol forbids it; the library lets it pass.
TEST_F(hostile_layers, of_no_size_without_anchors_get_all_that_there_is)
{
    layer_surface &wide = show({.size = {0, 40}, .anchor = TOP | LEFT});
    EXPECT_EQ(box(wide), (wlr_box{0, 0, 1280, 40}));
    layer_surface &all = show({});
    EXPECT_EQ(box(all), (wlr_box{0, 0, 1280, 704}));
}

TEST_F(hostile_layers, with_the_largest_numbers_leave_the_output_a_usable_box)
{
    for (const int zone : {lowest, -1, 0, 1, highest})
        for (const int margin : {lowest, -1, 0, highest})
            for (const uint32_t edges : {0U, 1U, 2U, 4U, 8U, 7U, 11U, 13U, 14U, 15U}) {
                layer_surface &l = create({.size = {30, 30},
                                           .anchor = edges,
                                           .zone = zone,
                                           .margins = {margin, margin, margin, margin}});
                ASSERT_THAT(broken_rules(), IsEmpty()) << zone << ' ' << margin << ' ' << edges;
                ASSERT_EQ(l.owner().error(), 0);
                l.destroy();
                l.owner().vanish();
                settle();
                ASSERT_EQ(usable(), (wlr_box{0, 0, 1280, 704}));
            }
}

TEST_F(hostile_layers, of_enormous_size_are_arranged)
{
    layer_traits traits{.size = {highest, highest}, .anchor = BOTTOM | RIGHT, .opens = false};
    layer_surface &l = create(traits);
    l.auto_draw = false;
    l.commit();
    EVENTUALLY_EQ(l.last_size(), (test::size{highest, highest}));
    l.draw({10, 10});
    settle();
    EXPECT_THAT(broken_rules(), IsEmpty());
    l.size(0x80000000U, 10);
    EVENTUALLY(l.owner().protocol_error().has_value());
}

TEST_F(hostile_layers, that_draw_before_their_first_configure_are_a_protocol_error)
{
    layer_traits traits = top_bar(40);
    traits.opens = false;
    layer_surface &l = create(traits);
    l.draw({1280, 40});
    EVENTUALLY_EQ(l.owner().protocol_error(), (test::protocol_error{"zwlr_layer_surface_v1", 2}));
    EXPECT_TRUE(wl_list_empty(&server.layer_surfaces));
}

TEST_F(hostile_layers, that_change_their_size_while_they_are_unmapped_are_not_told_too_early)
{
    layer_surface &l = show(top_bar(40));
    l.size(200, 60);
    l.anchor(TOP);
    l.unmap();
    l.commit();
    EVENTUALLY_EQ(box(l), (wlr_box{540, 0, 200, 60}));
    EXPECT_EQ(l.owner().error(), 0);
}

TEST_F(hostile_layers, may_go_in_any_state_and_in_any_order)
{
    active_windows = test::activity::may_lag;
    map("witness");
    for (const bool drawn : {false, true})
        for (const bool committed : {false, true})
            for (int end = 0; end < 4; end++) {
                layer_traits traits = top_bar(40);
                traits.keyboard = keyboard_wish::exclusive;
                traits.opens = false;
                layer_surface &l = create(traits);
                l.auto_draw = drawn;
                if (committed || drawn)
                    l.commit();
                settle();
                test::popup menu{l, {.x = 20, .y = 30}};
                settle();
                if (end == 0)
                    l.destroy();
                else if (end == 1)
                    l.destroy_surface();
                else if (end == 2)
                    l.owner().vanish();
                else
                    l.unmap();
                settle();
                ASSERT_THAT(broken_rules(), IsEmpty()) << drawn << committed << end;
                l.owner().vanish();
                settle();
                ASSERT_TRUE(wl_list_empty(&server.layer_surfaces));
                ASSERT_EQ(usable(), (wlr_box{0, 0, 1280, 704}));
            }
}

TEST_F(hostile_layers, may_be_two_hundred)
{
    test::client &c = connect();
    for (int i = 0; i < 200; i++)
        surfaces.emplace_back(c, i % 2 == 0 ? top_bar(1) : layer_traits{.size = {30, 30}, .anchor = TOP});
    settle();
    EXPECT_EQ(wl_list_length(&server.layer_surfaces), 200);
    EXPECT_EQ(usable(), (wlr_box{0, 100, 1280, 604}));
    EXPECT_THAT(broken_rules(), IsEmpty());
    surfaces.clear();
    settle();
    EXPECT_EQ(usable(), (wlr_box{0, 0, 1280, 704}));
}
