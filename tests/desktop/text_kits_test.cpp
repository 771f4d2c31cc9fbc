// A text field and an input method, both played by tests. The compositor does not relay between them yet, so
// each test makes the global itself and shows that the global and the client hear each other.

#include "support/desktop.hpp"
#include "support/more_wlr.hpp"
#include "support/wayland_text.hpp"

using test::input_method;
using test::seat;
using test::text_input;
using test::window;
using testing::ElementsAre;
using testing::StrEq;

namespace
{

struct field_keeper {
    listener appear, enable, commit, disable, vanish;
    wlr_text_input_v3 *field = nullptr;
    std::vector<std::string> heard;
};

void field_enabled(field_keeper &keeper)
{
    keeper.heard.emplace_back("enable");
}

void field_committed(field_keeper &keeper)
{
    keeper.heard.emplace_back("commit");
}

void field_disabled(field_keeper &keeper)
{
    keeper.heard.emplace_back("disable");
}

void field_vanishes(field_keeper &keeper)
{
    for (listener *l : {&keeper.enable, &keeper.commit, &keeper.disable, &keeper.vanish})
        unlisten(*l);
    keeper.field = nullptr;
}

void field_appears(field_keeper &keeper, wlr_text_input_v3 *field)
{
    keeper.field = field;
    listen<&field_keeper::enable, field_enabled>(keeper, field->events.enable);
    listen<&field_keeper::commit, field_committed>(keeper, field->events.commit);
    listen<&field_keeper::disable, field_disabled>(keeper, field->events.disable);
    listen<&field_keeper::vanish, field_vanishes>(keeper, field->events.destroy);
}

struct text_field_kit : test::desktop {
    void SetUp() override
    {
        desktop::SetUp();
        plug("A", 640, 384);
        auto *manager = wlr_text_input_manager_v3_create(server.display);
        listen<&field_keeper::appear, field_appears>(keeper, manager->events.new_text_input);
        editor = &map("editor");
        ears.emplace(editor->owner());
        kit.emplace(*ears);
        EVENTUALLY(keeper.field != nullptr);
        wlr_text_input_v3_send_enter(keeper.field, tl_surface(record(*editor)));
        EVENTUALLY(kit->heard("enter editor"));
        (void)kit->take();
    }
    void TearDown() override
    {
        kit.reset();
        EVENTUALLY(keeper.field == nullptr);
        ears.reset();
        unlisten(keeper.appear);
        desktop::TearDown();
    }

    field_keeper keeper;
    window *editor = nullptr;
    std::optional<seat> ears;
    std::optional<text_input> kit;
};

TEST_F(text_field_kit, tells_what_surrounds_its_cursor)
{
    kit->enable();
    kit->surrounding("hello", 5, 2);
    kit->content(0, 8);
    kit->cursor_rectangle(10, 20, 1, 16);
    kit->commit();
    EVENTUALLY(!keeper.heard.empty());
    EXPECT_THAT(keeper.heard, ElementsAre("enable"));
    const wlr_text_input_v3_state &told = keeper.field->current;
    EXPECT_THAT(told.surrounding.text, StrEq("hello"));
    EXPECT_EQ(told.surrounding.cursor, 5U);
    EXPECT_EQ(told.surrounding.anchor, 2U);
    EXPECT_EQ(told.content_type.purpose, 8U);
    EXPECT_EQ(told.cursor_rectangle, (wlr_box{10, 20, 1, 16}));
}

TEST_F(text_field_kit, changes_and_ends_what_it_told)
{
    kit->enable();
    kit->commit();
    kit->surrounding("hello there", 11, 11);
    kit->commit();
    kit->disable();
    kit->commit();
    settle();
    EXPECT_THAT(keeper.heard, ElementsAre("enable", "commit", "disable"));
}

TEST_F(text_field_kit, hears_what_is_written_into_it)
{
    kit->enable();
    kit->commit();
    EVENTUALLY(!keeper.heard.empty());
    wlr_text_input_v3_send_preedit_string(keeper.field, "ni", 2, 2);
    wlr_text_input_v3_send_done(keeper.field);
    wlr_text_input_v3_send_delete_surrounding_text(keeper.field, 3, 0);
    wlr_text_input_v3_send_commit_string(keeper.field, "text");
    wlr_text_input_v3_send_done(keeper.field);
    wlr_text_input_v3_send_leave(keeper.field);
    EVENTUALLY(kit->heard("leave editor"));
    EXPECT_THAT(kit->take(),
                ElementsAre("preedit ni 2-2", "done", "delete 3,0", "commit text", "done", "leave editor"));
}

struct method_keeper {
    listener appear, commit, popup_appear, popup_vanish, vanish;
    wlr_input_method_v2 *method = nullptr;
    wlr_input_popup_surface_v2 *popup = nullptr;
    int commits = 0;
};

void method_committed(method_keeper &keeper)
{
    keeper.commits++;
}

void popup_vanishes(method_keeper &keeper)
{
    unlisten(keeper.popup_vanish);
    keeper.popup = nullptr;
}

void popup_appears(method_keeper &keeper, wlr_input_popup_surface_v2 *popup)
{
    keeper.popup = popup;
    listen<&method_keeper::popup_vanish, popup_vanishes>(keeper, popup->events.destroy);
}

void method_vanishes(method_keeper &keeper)
{
    for (listener *l : {&keeper.commit, &keeper.popup_appear, &keeper.vanish})
        unlisten(*l);
    keeper.method = nullptr;
}

void method_appears(method_keeper &keeper, wlr_input_method_v2 *method)
{
    keeper.method = method;
    listen<&method_keeper::commit, method_committed>(keeper, method->events.commit);
    listen<&method_keeper::popup_appear, popup_appears>(keeper, method->events.new_popup_surface);
    listen<&method_keeper::vanish, method_vanishes>(keeper, method->events.destroy);
}

struct input_method_kit : test::desktop {
    void SetUp() override
    {
        desktop::SetUp();
        auto *manager = wlr_input_method_manager_v2_create(server.display);
        listen<&method_keeper::appear, method_appears>(keeper, manager->events.new_input_method);
        writer = &connect();
        ears.emplace(*writer);
        kit.emplace(*ears);
        EVENTUALLY(keeper.method != nullptr);
    }
    void TearDown() override
    {
        kit.reset();
        EVENTUALLY(keeper.method == nullptr && keeper.popup == nullptr);
        ears.reset();
        unlisten(keeper.appear);
        desktop::TearDown();
    }

    method_keeper keeper;
    test::client *writer = nullptr;
    std::optional<seat> ears;
    std::optional<input_method> kit;
};

TEST_F(input_method_kit, hears_of_the_text_that_it_may_write_into)
{
    wlr_input_method_v2_send_activate(keeper.method);
    wlr_input_method_v2_send_surrounding_text(keeper.method, "hello", 5, 2);
    wlr_input_method_v2_send_text_change_cause(keeper.method, 1);
    wlr_input_method_v2_send_content_type(keeper.method, 0, 8);
    wlr_input_method_v2_send_done(keeper.method);
    wlr_input_method_v2_send_deactivate(keeper.method);
    wlr_input_method_v2_send_done(keeper.method);
    EVENTUALLY(kit->heard("deactivate"));
    settle();
    EXPECT_THAT(kit->take(), ElementsAre("activate", "surrounding hello 5,2", "cause 1", "content 0 8",
                                         "done", "deactivate", "done"));
}

TEST_F(input_method_kit, writes_text)
{
    wlr_input_method_v2_send_activate(keeper.method);
    wlr_input_method_v2_send_done(keeper.method);
    EVENTUALLY(kit->heard("done"));
    kit->preedit("ni", 2, 2);
    kit->delete_surrounding(3, 1);
    kit->commit_string("text");
    kit->commit();
    EVENTUALLY_EQ(keeper.commits, 1);
    const wlr_input_method_v2_state &told = keeper.method->current;
    EXPECT_THAT(told.preedit.text, StrEq("ni"));
    EXPECT_EQ(told.preedit.cursor_end, 2);
    EXPECT_EQ(told.delete_.before_length, 3U);
    EXPECT_EQ(told.delete_.after_length, 1U);
    EXPECT_THAT(told.commit_text, StrEq("text"));
}

TEST_F(input_method_kit, shows_a_popup_and_hears_where_the_text_is)
{
    wl_surface *surface = writer->create_surface("choice");
    kit->show_popup(surface);
    EVENTUALLY(keeper.popup != nullptr);
    wlr_box text{10, 20, 1, 16};
    wlr_input_popup_surface_v2_send_text_input_rectangle(keeper.popup, &text);
    EVENTUALLY(kit->heard("rectangle 10,20 1x16"));
    kit->close_popup();
    EVENTUALLY(keeper.popup == nullptr);
    writer->destroy_surface(surface);
}

} // namespace
