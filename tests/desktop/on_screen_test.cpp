// Overlays that other programs ask for: a message, and a badge on each output.

#include "support/desktop.hpp"

#include "outputs/identify.hpp"
#include "outputs/power.hpp"
#include "outputs/replay_osd.hpp"
#include "windows/fullscreen.hpp"

using testing::ElementsAre;

namespace
{

struct on_screen : test::desktop {
    void SetUp() override
    {
        desktop::SetUp();
        plug("A", 1280, 704);
        plug("B", 800, 600);
        wlr_cursor_warp(server.cursor, nullptr, 600, 300);
    }
    const wlr_scene_node *message()
    {
        const wlr_scene_buffer *shown = server.on_screen.replay_osd.node;
        return shown != nullptr && shown->node.enabled ? &shown->node : nullptr;
    }
    // Returns where the message begins.
    std::pair<int, int> place_of_message()
    {
        return message() != nullptr ? std::pair{message()->x, message()->y} : std::pair{-1, -1};
    }
    void set_scale(const std::string &name, float scale)
    {
        output_state state;
        wlr_output_state_set_scale(&state, scale);
        wlr_output_send_request_state(output(name).wlr_output, &state);
    }
    test::image picture_of(const std::string &request)
    {
        command("osd gone"); // another picture before
        settle();
        command(request);
        settle();
        return picture("A");
    }
    std::vector<std::string> names_of_badged()
    {
        std::vector<std::string> names;
        for (const auto &o : each<&vantore_output::link>(server.outputs))
            if (o.ident_buf != nullptr)
                names.emplace_back(o.wlr_output->name);
        return names;
    }
};

TEST_F(on_screen, message_appears_below_the_pointer_s_output_s_top_and_goes_after_a_while)
{
    command("osd Saved");
    const int width = server.on_screen.replay_osd.node->dst_width;
    EXPECT_EQ(place_of_message(), (std::pair{(1280 - width) / 2, 56}));
    EVENTUALLY_EQ(pixel("A", 640 - width / 2 + 3, 56 + 17) >> 24, 0xffU);
    advance_clock_ms(2599);
    EXPECT_NE(message(), nullptr);
    advance_clock_ms(1);
    EXPECT_EQ(message(), nullptr);
}

TEST_F(on_screen, message_replaces_the_one_before_and_stays_its_own_time)
{
    command("osd one");
    const int width = server.on_screen.replay_osd.node->dst_width;
    advance_clock_ms(2000);
    command("osd and another one");
    EXPECT_GT(server.on_screen.replay_osd.node->dst_width, width);
    advance_clock_ms(2000);
    EXPECT_NE(message(), nullptr);
    advance_clock_ms(600);
    EXPECT_EQ(message(), nullptr);
}

TEST_F(on_screen, message_appears_where_the_game_is)
{
    wlr_cursor_warp(server.cursor, nullptr, 1500, 300);
    test::window &game = map("game");
    toplevel_set_fullscreen(record(game), true);
    wlr_cursor_warp(server.cursor, nullptr, 600, 300);
    settle();
    command("osd Saved");
    EXPECT_GE(place_of_message().first, 1280);
    EXPECT_EQ(message()->parent, server.layers[ZWLR_LAYER_SHELL_V1_LAYER_OVERLAY]); // above the game
}

TEST_F(on_screen, message_keeps_its_inner_blanks_only)
{
    const test::image plain = picture_of("osd a  b");
    EXPECT_EQ(test::compare(picture_of("osd \t a  b \n\r "), plain, 0).pixels, 0U);
    EXPECT_NE(test::compare(picture_of("osd a b"), plain, 0).pixels, 0U);
}

TEST_F(on_screen, message_without_text_or_output_does_not_appear)
{
    for (const char *nothing : {"osd", "osd ", "osd \n"})
        command(nothing);
    EXPECT_EQ(message(), nullptr);
    unplug("A");
    unplug("B");
    command("osd text");
    EXPECT_EQ(message(), nullptr);
}

TEST_F(on_screen, message_that_is_too_long_is_cut_to_its_output)
{
    command("osd " + std::string(5000, 'w'));
    EXPECT_LE(server.on_screen.replay_osd.node->dst_width, 1280);
    EXPECT_GE(place_of_message().first, 0);
    command("osd a\xff");
    EXPECT_NE(message(), nullptr);
}

TEST_F(on_screen, pictures_have_the_pixels_of_their_output)
{
    set_scale("A", 2);
    command("osd Saved");
    const wlr_scene_buffer &shown = *server.on_screen.replay_osd.node;
    EXPECT_EQ(shown.WLR_PRIVATE.buffer_width, 2 * shown.dst_width);
    EXPECT_EQ(shown.WLR_PRIVATE.buffer_height, 2 * shown.dst_height);
    EXPECT_EQ(place_of_message().first, (640 - shown.dst_width) / 2);
}

TEST_F(on_screen, message_over_a_fullscreen_window_looks_like_this)
{
    test::window &game = map("game");
    toplevel_set_fullscreen(record(game), true);
    settle();
    game.fill(0xff336699);
    command("osd The last minute was saved");
    settle();
    EXPECT_TRUE(test::matches_golden(picture("A"), "message_over_fullscreen", 8));
}

TEST_F(on_screen, badges_name_every_enabled_output_in_its_middle)
{
    command("identify");
    ASSERT_THAT(names_of_badged(), ElementsAre("B", "A"));
    const wlr_scene_buffer &badge = *output("B").ident_buf;
    EXPECT_EQ(badge.node.x, 1280 + (800 - badge.dst_width) / 2);
    EXPECT_EQ(badge.node.y, (600 - badge.dst_height) / 2);
    advance_clock_ms(3999);
    EXPECT_THAT(names_of_badged(), ElementsAre("B", "A"));
    advance_clock_ms(1);
    EXPECT_THAT(names_of_badged(), ElementsAre());
}

TEST_F(on_screen, badges_stay_for_one_to_thirty_seconds)
{
    struct {
        const char *wish;
        int ms;
    } const cases[]{
        {"identify 0", 1000}, {"identify 1000", 30000}, {"identify -5", 1000}, {"identify 2", 2000}};
    for (const auto &c : cases) {
        command(c.wish);
        advance_clock_ms(c.ms - 1);
        EXPECT_THAT(names_of_badged(), ElementsAre("B", "A")) << c.wish;
        advance_clock_ms(1);
        EXPECT_THAT(names_of_badged(), ElementsAre()) << c.wish;
    }
}

TEST_F(on_screen, badges_go_when_they_are_not_wanted_any_more)
{
    command("identify 9");
    command("identify off");
    EXPECT_THAT(names_of_badged(), ElementsAre());
    command("identify 9");
    command("identify 9"); // replaces the first ones
    unplug("B");
    EXPECT_THAT(names_of_badged(), ElementsAre("A"));
}

TEST_F(on_screen, badges_look_like_this_on_outputs_of_different_scales)
{
    unplug("B");
    plug({.name = "HDMI-A-1", .modes = {{.width = 960, .height = 540, .preferred = true}}});
    set_scale("HDMI-A-1", 1.5F);
    command("identify");
    settle();
    EXPECT_TRUE(test::matches_golden(picture("A"), "badge", 8));
    EXPECT_TRUE(test::matches_golden(picture("HDMI-A-1"), "badge_scaled", 8));
}

TEST_F(on_screen, badges_leave_dark_outputs_out)
{
    set_dpms(server, false);
    command("identify");
    EXPECT_THAT(names_of_badged(), ElementsAre());
}

} // namespace
