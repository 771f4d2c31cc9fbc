// Clients that die, send nonsense or send too much.

#include "support/cut_line.hpp"
#include "support/desktop.hpp"
#include "support/server_check.hpp"
#include "support/wayland_devices.hpp"
#include "support/wayland_layer.hpp"
#include "support/wayland_popup.hpp"
#include "support/wayland_transfer.hpp"

#include <linux/input-event-codes.h>

using testing::IsEmpty;

namespace
{

constexpr int most_requests = 380; // the script makes no more than these
constexpr int cuts_in_a_test = 20;

struct hostile : test::desktop {
    void SetUp() override
    {
        desktop::SetUp();
        plug("A", 1280, 704);
        pointer = &plug_pointer();
        keyboard = &plug_keyboard();
        witness = &map("witness", {200, 200});
        place(*witness, 1000, 400);
    }

    // Does everything that a client does with windows, menus, parts, transfers and devices. The line may
    // break at any request.
    void run_script(test::cut_line &line)
    {
        test::client &c = connect(line);
        if (c.error() != 0)
            return;
        test::seat seat{c};
        test::clipboard clips{seat};
        test::primary_selection marked{seat};
        settle();
        test::window &w = c.create_window("doomed");
        w.preferred = {300, 200};
        w.title("doomed");
        std::optional<test::decoration> deco{w};
        w.open();
        settle();
        w.add_subsurface(-20, 10, {50, 50});
        w.request_frame();
        settle();
        if (const vantore_toplevel *t = find_record(w))
            wlr_scene_node_set_position(&t->scene_tree->node, 100, 100);
        point_at(*pointer, 110, 110);
        keyboard->tap(KEY_A);
        settle();
        clips.offer("text", seat.press_serial());
        marked.offer("text", seat.press_serial());
        seat.set_shape(1);
        settle();
        pointer->press(BTN_LEFT);
        settle();
        run_menus(w, seat);
        pointer->release(BTN_LEFT);
        pointer->press(BTN_LEFT);
        settle();
        run_drag(w, seat, clips);
        pointer->release(BTN_LEFT);
        settle();
        run_devices(w, seat);
        run_panel(seat);
        w.request_maximize();
        settle();
        w.unmap();
        settle();
        w.open();
        settle();
        deco.reset();
        w.destroy();
        settle();
    }

    void run_menus(test::window &w, test::seat &seat)
    {
        test::popup menu{w, {.x = 20, .y = 30}, test::popup::draws::always, &seat, seat.press_serial()};
        settle();
        test::popup submenu{menu, {.x = 90, .y = 10, .adjustment = 3}};
        settle();
        submenu.reposition({.x = 10, .y = 60}, 1);
        settle();
        submenu.destroy();
        menu.destroy();
        settle();
    }

    void run_drag(test::window &w, test::seat &seat, test::clipboard &clips)
    {
        wl_surface *icon = w.owner().create_surface("icon");
        clips.start_drag(w, icon, "cargo", seat.press_serial());
        w.owner().paint(icon, {30, 30}, 0xffff00ff);
        settle();
        point_at(*pointer, 150, 150);
        settle();
        w.owner().destroy_surface(icon);
        point_at(*pointer, 1010, 410);
        settle();
    }

    void run_panel(test::seat &seat)
    {
        test::layer_traits traits = test::top_bar(40);
        traits.keyboard = test::keyboard_wish::exclusive;
        test::layer_surface panel{seat.owner(), traits};
        settle();
        point_at(*pointer, 50, 20);
        pointer->press(BTN_LEFT);
        settle();
        test::popup menu{panel, {.x = 20, .y = 30}};
        settle();
        panel.zone(60);
        panel.move_to(test::layer::overlay);
        panel.commit();
        settle();
        panel.unmap();
        panel.commit();
        settle();
        pointer->release(BTN_LEFT);
        menu.destroy();
        panel.destroy();
        settle();
    }

    void run_devices(test::window &w, test::seat &seat)
    {
        const test::shortcuts_inhibitor inhibitor{seat, w};
        test::virtual_pointer hand{seat};
        test::virtual_keyboard typist{seat};
        typist.keymap(keyboard->base.keymap_string);
        hand.move_to(120, 120, 1280, 704);
        hand.button(BTN_LEFT, true);
        typist.key(KEY_B, true);
        settle();
        for (int i = 0; i < 10; i++)
            hand.move(1, 1);
        typist.key(KEY_B, false);
        hand.button(BTN_LEFT, false);
        settle();
    }

    test::made_up_pointer *pointer = nullptr;
    test::made_up_keyboard *keyboard = nullptr;
    test::window *witness = nullptr;
};

class cut_after : public hostile, public testing::WithParamInterface<int>
{
};

TEST_P(cut_after, that_many_requests_a_client_leaves_everything_in_order)
{
    for (int n = GetParam(); n < GetParam() + cuts_in_a_test; n++) {
        test::cut_line line{n};
        run_script(line);
        forget(line);
        pointer->release(BTN_LEFT);
        settle();
        ASSERT_THAT(test::server_check(server), IsEmpty()) << "after request " << n << '\n' << state();
        ASSERT_EQ(witness->owner().error(), 0);
        ASSERT_EQ(wl_list_length(&server.toplevels), 1) << n;
        ASSERT_EQ(wl_list_length(&server.keyboards), 1) << n;
        ASSERT_TRUE(wl_list_empty(&server.layer_surfaces)) << n;
        ASSERT_EQ(output("A").usable, (wlr_box{0, 0, 1280, 704})) << n;
        ASSERT_FALSE(wlr_seat_pointer_has_grab(server.seat)) << n;
        ASSERT_TRUE(wl_list_empty(&server.drag_icon_tree->children)) << n;
    }
}

INSTANTIATE_TEST_SUITE_P(all, cut_after, testing::Range(1, most_requests + 1, cuts_in_a_test));

TEST_F(hostile, a_client_that_is_left_alone_finishes_its_script)
{
    test::cut_line line{1'000'000};
    run_script(line);
    EXPECT_FALSE(line.is_cut());
    EXPECT_GE(line.carried(), 200);
    EXPECT_LE(line.carried(), most_requests) << "some of its requests are never the last";
    forget(line);
}

TEST_F(hostile, a_keyboard_of_a_client_may_press_thousands_of_keys)
{
    test::seat seat{witness->owner()};
    settle();
    test::virtual_keyboard typist{seat};
    typist.keymap(keyboard->base.keymap_string);
    for (uint32_t key = 0; key < 3000; key++)
        typist.key(key, true);
    settle();
    (void)seat.take();
    keyboard->tap(KEY_A);
    EVENTUALLY(seat.heard("key up 30"));
    EXPECT_THAT(test::server_check(server), IsEmpty());
}

TEST_F(hostile, a_pointer_of_a_client_may_point_anywhere)
{
    test::seat seat{witness->owner()};
    settle();
    test::virtual_pointer hand{seat};
    for (const double far : {1e6, -1e6, 8e6, -8e6})
        hand.move(far, -far);
    hand.move_to(5, 5, 1, 1);
    hand.move_to(0, 0, 0, 0);
    for (uint32_t code = 0; code < 300; code++)
        hand.button(code, true);
    settle();
    EXPECT_TRUE(wlr_output_layout_contains_point(server.output_layout, nullptr, int(server.cursor->x),
                                                 int(server.cursor->y)));
    EXPECT_THAT(test::server_check(server), IsEmpty());
}

} // namespace
