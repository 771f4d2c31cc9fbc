// Menus of panels, docks and wallpapers.

#include "support/layers.hpp"
#include "support/wayland_constraints.hpp"
#include "support/wayland_popup.hpp"
#include "support/wayland_seat.hpp"

#include "windows/popup.hpp"

#include <linux/input-event-codes.h>

using test::BOTTOM;
using test::keyboard_wish;
using test::layer;
using test::layer_surface;
using test::layer_traits;
using test::layers;
using test::LEFT;
using test::popup;
using test::RIGHT;
using test::TOP;
using test::top_bar;
using test::window;

namespace
{

constexpr uint32_t grey = 0xffd0d0d0, green = 0xff30c030; // of a popup, and of a window
constexpr uint32_t SLIDE_X = 1, SLIDE_Y = 2;

struct layer_menus : layers {
    void SetUp() override
    {
        layers::SetUp();
        plug_keyboard();
        active_windows = test::activity::may_lag;
    }

    void TearDown() override
    {
        ears.reset();
        layers::TearDown();
    }

    // Shows a layer surface whose client listens.
    layer_surface &show_heard(const layer_traits &traits)
    {
        layer_surface &l = show(traits);
        ears = std::make_unique<test::seat>(l.owner());
        settle();
        return l;
    }

    [[nodiscard]] bool menu_has_keyboard() const
    {
        wlr_surface *focused = server.seat->keyboard_state.focused_surface;
        return focused != nullptr && wlr_xdg_popup_try_from_wlr_surface(focused) != nullptr;
    }

    static layer_traits dock(keyboard_wish wish = keyboard_wish::none)
    {
        return {.name = "dock", .size = {200, 40}, .anchor = TOP | LEFT, .keyboard = wish};
    }

    std::unique_ptr<test::seat> ears;
};

TEST_F(layer_menus, are_shown_below_their_panel)
{
    window &w = map("page", {1280, 704});
    place(w, 0, 0);
    layer_surface &panel = show(top_bar(40));
    popup menu{panel, {.x = 20, .y = 40}};
    EVENTUALLY_EQ(pixel("A", 25, 45), grey);
    EXPECT_EQ(menu.configure_count(), 1);
    EXPECT_EQ(menu.y(), 40);
    popup submenu{menu, {.x = 100, .y = 10}};
    EVENTUALLY_EQ(pixel("A", 20 + 150, 60), grey);
}

TEST_F(layer_menus, stay_on_the_output_of_their_panel)
{
    plug("B", 640, 640);
    layer_surface &panel = show(
        {.output = "A", .size = {200, 40}, .anchor = BOTTOM | RIGHT, .margins = {.right = 10, .bottom = 5}});
    popup menu{panel, {.x = 180, .y = 40, .size = {100, 60}, .adjustment = SLIDE_X | SLIDE_Y}};
    EVENTUALLY_EQ(menu.configure_count(), 1);
    EXPECT_EQ(menu.x(), 210 - 100);
    EXPECT_EQ(menu.y(), 45 - 60);
    popup submenu{menu, {.x = 90, .y = 10, .size = {100, 60}, .adjustment = SLIDE_X | SLIDE_Y}};
    EVENTUALLY_EQ(submenu.configure_count(), 1);
    EXPECT_EQ(submenu.x(), 0);
    menu.reposition({.x = 300, .y = 0, .size = {100, 60}, .adjustment = SLIDE_X}, 7);
    EVENTUALLY_EQ(menu.last_token(), 7U);
    EXPECT_EQ(menu.x(), 210 - 100);
}

class low_layer_menus : public layer_menus, public testing::WithParamInterface<layer>
{
};

INSTANTIATE_TEST_SUITE_P(all, low_layer_menus, testing::Values(layer::background, layer::bottom));

TEST_P(low_layer_menus, lie_above_windows_and_follow_their_surface)
{
    window &w = map("page", {1280, 704});
    place(w, 0, 0);
    w.fill(green);
    layer_surface &icons = show({.on = GetParam(), .size = {200, 100}, .anchor = TOP | LEFT});
    popup menu{icons, {.x = 20, .y = 30}};
    EVENTUALLY_EQ(pixel("A", 25, 35), grey);
    icons.margins({.left = 300});
    icons.commit();
    EVENTUALLY_EQ(pixel("A", 325, 35), grey);
    EVENTUALLY_EQ(pixel("A", 25, 35), green);
    icons.move_to(layer::overlay);
    icons.commit();
    EVENTUALLY_EQ(find(icons)->popups->node.parent, find(icons)->scene->tree);
    EVENTUALLY_EQ(pixel("A", 325, 35), grey);
    icons.move_to(GetParam());
    icons.commit();
    EVENTUALLY_EQ(pixel("A", 310, 10), green);
    EVENTUALLY_EQ(pixel("A", 325, 35), grey);
    icons.destroy();
    EVENTUALLY(menu.dismissed());
    EVENTUALLY_EQ(pixel("A", 325, 35), green);
}

TEST_F(layer_menus, go_with_their_panel)
{
    layer_surface &panel = show(top_bar(40));
    popup menu{panel, {.x = 20, .y = 30}};
    popup submenu{menu, {.x = 90, .y = 10}};
    EVENTUALLY_EQ(submenu.configure_count(), 1);
    panel.unmap();
    EVENTUALLY(menu.dismissed() && submenu.dismissed());
    EXPECT_EQ(panel.owner().error(), 0);
}

TEST_F(layer_menus, of_clients_that_vanish_are_harmless)
{
    for (const layer on : {layer::background, layer::top}) {
        window &page = map("page");
        layer_surface &panel =
            show_heard({.on = on, .size = {200, 40}, .keyboard = keyboard_wish::on_demand});
        popup menu{panel, {.x = 20, .y = 30}, ears.get(), 1};
        popup submenu{menu, {.x = 90, .y = 10}, ears.get(), 1};
        EVENTUALLY(ears->heard("keys enter popup"));
        panel.owner().vanish();
        EVENTUALLY(has_keyboard(page));
        ears.reset();
    }
}

TEST_F(layer_menus, that_grab_free_a_pointer_that_a_window_has_locked)
{
    window &page = map("page");
    place(page, 0, 0);
    test::made_up_pointer &pointer = plug_pointer();
    point_at(pointer, 300, 300);
    {
        test::seat games{page.owner()};
        settle();
        const test::locked_pointer lock{games, page.get()};
        EVENTUALLY(lock.active());
        layer_surface &panel = show_heard(dock());
        auto menu = std::make_unique<popup>(panel, test::placement{.x = 20, .y = 30}, ears.get(), 1);
        EVENTUALLY(menu_has_keyboard());
        EVENTUALLY(!lock.active());
        menu.reset();
        EVENTUALLY(lock.active());
    }
}

TEST_F(layer_menus, leave_the_keyboard_where_it_is_unless_they_grab)
{
    window &page = map("page");
    layer_surface &panel = show(dock());
    popup menu{panel, {.x = 20, .y = 30}};
    EVENTUALLY_EQ(menu.configure_count(), 1);
    settle();
    EXPECT_TRUE(has_keyboard(page));
}

TEST_F(layer_menus, that_grab_have_the_keyboard_while_they_last)
{
    window &page = map("page");
    layer_surface &panel = show_heard(dock());
    auto menu = std::make_unique<popup>(panel, test::placement{.x = 20, .y = 30}, ears.get(), 1);
    EVENTUALLY(ears->heard("keys enter popup"));
    plug_keyboard("another").tap(KEY_A);
    EVENTUALLY(ears->heard("key down 30"));
    panel.commit();
    settle();
    EXPECT_TRUE(menu_has_keyboard());
    menu.reset();
    EVENTUALLY(has_keyboard(page));
}

TEST_F(layer_menus, give_the_keyboard_back_to_the_menu_and_the_panel_that_had_it)
{
    map("page");
    layer_surface &launcher = show_heard(dock(keyboard_wish::exclusive));
    EXPECT_TRUE(has_keyboard(launcher));
    auto menu = std::make_unique<popup>(launcher, test::placement{.x = 20, .y = 30}, ears.get(), 1);
    EVENTUALLY(ears->heard("keys enter popup"));
    launcher.commit();
    settle();
    EXPECT_TRUE(menu_has_keyboard());
    const wlr_surface *of_menu = keyboard_focus();
    auto submenu = std::make_unique<popup>(*menu, test::placement{.x = 90, .y = 10}, ears.get(), 1);
    EVENTUALLY(keyboard_focus() != of_menu);
    submenu.reset();
    EVENTUALLY_EQ(keyboard_focus(), of_menu);
    menu.reset();
    EVENTUALLY(has_keyboard(launcher));
}

TEST_F(layer_menus, that_close_on_an_empty_desktop_leave_the_keyboard_to_nobody)
{
    layer_surface &panel = show_heard(dock());
    auto menu = std::make_unique<popup>(panel, test::placement{.x = 20, .y = 30}, ears.get(), 1);
    EVENTUALLY(menu_has_keyboard());
    menu.reset();
    EVENTUALLY_EQ(keyboard_focus(), nullptr);
}

TEST_F(layer_menus, close_on_a_press_elsewhere)
{
    window &page = map("page", {400, 300});
    place(page, 600, 300);
    test::made_up_pointer &pointer = plug_pointer();
    layer_surface &panel = show_heard(dock());
    popup menu{panel, {.x = 20, .y = 30}, ears.get(), 1};
    EVENTUALLY(menu_has_keyboard());
    point_at(pointer, 30, 50);
    EVENTUALLY(ears->heard("pointer enter popup 10,20"));
    point_at(pointer, 700, 400);
    pointer.click(BTN_LEFT);
    EVENTUALLY(menu.dismissed());
    EVENTUALLY(has_keyboard(page));
}

TEST_F(layer_menus, do_not_take_the_keyboard_while_the_session_is_locked)
{
    window &page = map("page");
    layer_surface &panel = show_heard(dock());
    server.locked = true;
    popup menu{panel, {.x = 20, .y = 30}, ears.get(), 1};
    EVENTUALLY_EQ(menu.configure_count(), 1);
    settle();
    EXPECT_TRUE(has_keyboard(page));
    server.locked = false;
}

} // namespace
