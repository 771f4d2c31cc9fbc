// Clipboard, primary selection, drag and drop.

#include "support/desktop.hpp"
#include "support/server_check.hpp"
#include "support/wayland_popup.hpp"
#include "support/wayland_transfer.hpp"

#include <linux/input-event-codes.h>

using test::clipboard;
using test::incoming_text;
using test::seat;
using test::window;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

namespace
{

// Two clients with a window each: the source at 100,100 and the target at 700,100.
struct transfers : test::desktop {
    struct side {
        explicit side(window &w) : page(w), ears(w.owner()), clips(ears) {}
        window &page;
        seat ears;
        clipboard clips;
    };

    void SetUp() override
    {
        desktop::SetUp();
        plug("A", 1280, 704);
        keyboard = &plug_keyboard();
        pointer = &plug_pointer();
        target = std::make_unique<side>(map("target", {400, 300}));
        source = std::make_unique<side>(map("source", {400, 300}));
        place(source->page, 100, 100);
        place(target->page, 700, 100);
        settle();
    }

    void TearDown() override
    {
        source.reset();
        target.reset();
        desktop::TearDown();
    }

    // The serial of a key press that the source has heard.
    uint32_t key_serial()
    {
        keyboard->tap(KEY_A);
        settle();
        return source->ears.press_serial();
    }

    void press_on_source()
    {
        point_at(*pointer, 110, 110);
        pointer->press(BTN_LEFT);
        settle();
    }

    void focus_target()
    {
        point_at(*pointer, 710, 110);
        pointer->click(BTN_LEFT);
        settle();
    }

    test::made_up_keyboard *keyboard = nullptr;
    test::made_up_pointer *pointer = nullptr;
    std::unique_ptr<side> source, target;
};

TEST_F(transfers, what_one_client_copies_another_pastes)
{
    source->clips.offer("hello", key_serial());
    focus_target();
    ASSERT_TRUE(target->clips.has_offer());
    incoming_text text;
    target->clips.paste(text);
    EVENTUALLY_EQ(text.read(), "hello");
}

TEST_F(transfers, a_later_copy_replaces_the_earlier)
{
    source->clips.offer("old", key_serial());
    settle();
    source->clips.offer("new", key_serial());
    focus_target();
    incoming_text text;
    target->clips.paste(text);
    EVENTUALLY_EQ(text.read(), "new");
}

TEST_F(transfers, a_cleared_clipboard_offers_nothing)
{
    source->clips.offer("hello", key_serial());
    settle();
    source->clips.clear(key_serial());
    focus_target();
    EXPECT_FALSE(target->clips.has_offer());
}

TEST_F(transfers, the_clipboard_goes_with_its_client)
{
    source->clips.offer("hello", key_serial());
    focus_target();
    ASSERT_TRUE(target->clips.has_offer());
    source->page.owner().vanish();
    EVENTUALLY(!target->clips.has_offer());
    EXPECT_THAT(test::server_check(server), IsEmpty());
}

TEST_F(transfers, the_primary_selection_is_one_of_its_own)
{
    test::primary_selection ours{source->ears}, theirs{target->ears};
    ours.offer("marked", key_serial());
    source->clips.offer("copied", key_serial());
    focus_target();
    EVENTUALLY(theirs.has_offer());
    incoming_text marked, copied;
    theirs.paste(marked);
    target->clips.paste(copied);
    EVENTUALLY_EQ(marked.read(), "marked");
    EVENTUALLY_EQ(copied.read(), "copied");
}

TEST_F(transfers, a_drag_is_told_to_the_window_under_it_and_dropped_there)
{
    press_on_source();
    source->clips.start_drag(source->page, nullptr, "cargo", source->ears.press_serial());
    settle();
    point_at(*pointer, 710, 120);
    point_at(*pointer, 715, 125);
    settle();
    EXPECT_THAT(target->clips.take(),
                ElementsAre("drag enter target 10,20", "drag motion 10,20", "drag motion 15,25"));
    target->clips.accept_drag(target->clips.drag_serial());
    settle();
    EXPECT_TRUE(source->clips.heard("source target text/plain"));
    pointer->release(BTN_LEFT);
    settle();
    EXPECT_THAT(target->clips.take(), Contains("drop"));
    EXPECT_TRUE(source->clips.heard("source dropped"));
    incoming_text text;
    target->clips.paste_drag(text);
    EVENTUALLY_EQ(text.read(), "cargo");
    target->clips.finish_drag();
    EVENTUALLY(source->clips.heard("source finished"));
}

TEST_F(transfers, a_drag_leaves_the_pointer_in_the_window_under_it)
{
    press_on_source();
    source->clips.start_drag(source->page, nullptr, "cargo", source->ears.press_serial());
    settle();
    point_at(*pointer, 710, 120);
    settle();
    (void)target->ears.take();
    pointer->release(BTN_LEFT);
    settle();
    EXPECT_TRUE(target->ears.heard("pointer enter target 10,20"));
}

TEST_F(transfers, a_drag_whose_source_is_given_up_gives_the_pointer_back)
{
    press_on_source();
    source->clips.start_drag(source->page, nullptr, "cargo", source->ears.press_serial());
    settle();
    ASSERT_NE(server.seat->drag, nullptr);
    (void)source->ears.take();
    source->clips.abandon_drag();
    EVENTUALLY_EQ(server.seat->drag, nullptr);
    settle();
    EXPECT_TRUE(source->ears.heard("pointer enter source 10,10"));
    pointer->release(BTN_LEFT);
}

TEST_F(transfers, a_drag_icon_follows_the_cursor_and_does_not_hide_what_lies_below)
{
    press_on_source();
    wl_surface *icon = source->page.owner().create_surface("icon");
    source->clips.start_drag(source->page, icon, "cargo", source->ears.press_serial());
    source->page.owner().paint(icon, {40, 40}, 0xffff00ff);
    settle();
    point_at(*pointer, 720.7, 130.2);
    EVENTUALLY_EQ(pixel("A", 755, 165), 0xffff00ffU);
    EXPECT_EQ(server.drag_icon_tree->node.x, 720);
    EXPECT_EQ(server.drag_icon_tree->node.y, 130);
    settle();
    EXPECT_TRUE(target->clips.heard("drag enter target 20.69921875,30.19921875"));
    pointer->release(BTN_LEFT);
    settle();
    EXPECT_TRUE(wl_list_empty(&server.drag_icon_tree->children));
    source->page.owner().destroy_surface(icon);
}

TEST_F(transfers, a_drag_with_a_made_up_serial_is_cancelled)
{
    press_on_source();
    source->clips.start_drag(source->page, nullptr, "cargo", 4711);
    EVENTUALLY(source->clips.heard("source cancelled"));
    point_at(*pointer, 710, 120);
    settle();
    EXPECT_THAT(target->clips.take(), IsEmpty());
}

TEST_F(transfers, a_drag_without_a_source_and_a_made_up_serial_is_harmless)
{
    press_on_source();
    source->clips.start_drag(source->page, nullptr, std::nullopt, 4711);
    settle();
    EXPECT_EQ(source->page.owner().error(), 0);
    EXPECT_FALSE(wlr_seat_pointer_has_grab(server.seat));
    EXPECT_FALSE(wlr_seat_keyboard_has_grab(server.seat));
    EXPECT_EQ(server.seat->drag, nullptr);
}

TEST_F(transfers, a_refused_drag_leaves_the_keyboard_to_an_open_menu)
{
    press_on_source();
    test::popup menu{source->page,
                     {.x = 20, .y = 30},
                     test::popup::draws::always,
                     &source->ears,
                     source->ears.press_serial()};
    EVENTUALLY_EQ(menu.configure_count(), 1);
    ASSERT_TRUE(wlr_seat_keyboard_has_grab(server.seat));
    const wlr_seat_keyboard_grab *grab = server.seat->keyboard_state.grab;
    source->clips.start_drag(source->page, nullptr, std::nullopt, 4711);
    settle();
    EXPECT_EQ(server.seat->keyboard_state.grab, grab);
    EXPECT_EQ(server.seat->drag, nullptr);
}

TEST_F(transfers, a_drag_without_a_source_stays_with_its_client)
{
    press_on_source();
    source->clips.start_drag(source->page, nullptr, std::nullopt, source->ears.press_serial());
    settle();
    point_at(*pointer, 710, 120);
    settle();
    EXPECT_THAT(target->clips.take(), IsEmpty());
    pointer->release(BTN_LEFT);
    settle();
    EXPECT_FALSE(wlr_seat_pointer_has_grab(server.seat));
}

TEST_F(transfers, a_drag_dropped_on_the_desktop_is_cancelled)
{
    press_on_source();
    source->clips.start_drag(source->page, nullptr, "cargo", source->ears.press_serial());
    settle();
    point_at(*pointer, 600, 600);
    pointer->release(BTN_LEFT);
    EVENTUALLY(source->clips.heard("source cancelled"));
}

struct place_of_nobody {
    const char *name;
    double lx, ly;
};

class drags_to_nobody : public transfers, public testing::WithParamInterface<place_of_nobody>
{
};

TEST_P(drags_to_nobody, leave_their_target_and_reach_nobody)
{
    press_on_source();
    source->clips.start_drag(source->page, nullptr, "cargo", source->ears.press_serial());
    settle();
    point_at(*pointer, 710, 120);
    settle();
    target->clips.accept_drag(target->clips.drag_serial());
    settle();
    (void)target->clips.take();
    point_at(*pointer, GetParam().lx, GetParam().ly);
    settle();
    EXPECT_THAT(target->clips.take(), ElementsAre("drag leave"));
    pointer->release(BTN_LEFT);
    EVENTUALLY(source->clips.heard("source cancelled"));
    EXPECT_THAT(target->clips.take(), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(over, drags_to_nobody,
                         testing::Values(place_of_nobody{"the_desktop", 600, 600},
                                         place_of_nobody{"a_border", 702, 200}),
                         [](const auto &place) { return std::string{place.param.name}; });

class vanishing_side : public transfers, public testing::WithParamInterface<const char *>
{
};

TEST_P(vanishing_side, ends_the_drag_in_order)
{
    press_on_source();
    wl_surface *icon = source->page.owner().create_surface("icon");
    source->clips.start_drag(source->page, icon, "cargo", source->ears.press_serial());
    source->page.owner().paint(icon, {40, 40}, 0xffff00ff);
    settle();
    point_at(*pointer, 710, 120);
    settle();
    auto &lost = std::string_view{GetParam()} == "source" ? *source : *target;
    lost.page.owner().vanish();
    settle();
    pointer->release(BTN_LEFT);
    settle();
    EXPECT_FALSE(wlr_seat_pointer_has_grab(server.seat));
    EXPECT_TRUE(wl_list_empty(&server.drag_icon_tree->children));
    EXPECT_THAT(test::server_check(server), IsEmpty());
    source->page.owner().destroy_surface(icon);
}

INSTANTIATE_TEST_SUITE_P(the, vanishing_side, testing::Values("source", "target"),
                         [](const auto &side) { return std::string{side.param}; });

} // namespace
