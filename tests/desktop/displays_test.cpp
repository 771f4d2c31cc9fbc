// Arrangements of displays that the user has saved.

#include "support/outputs.hpp"

#include "outputs/displays.hpp"
#include "outputs/lookup.hpp"
#include "outputs/output_token.hpp"
#include "outputs/power.hpp"
#include "windows/placement.hpp"

using testing::HasSubstr;
using testing::Not;

namespace
{

struct saved_displays : test::outputs_desk {
    void save(std::string_view text) const { world.write_config("displays.conf", text); }
    wlr_box place_of(const std::string &name) { return output_layout_box(output(name)); }
    bool is_lit(const std::string &name) { return output(name).wlr_output->enabled; }
};

TEST_F(saved_displays, are_arranged_when_they_are_plugged_in)
{
    save("[docked]\noutput A enable position 800 0\noutput B enable scale 2 position 0 0\n");
    plug("A", 1280, 704);
    EXPECT_THAT(world.log(), Not(HasSubstr("applying profile")));
    plug("B", 1600, 1200);
    EXPECT_THAT(world.log(), HasSubstr("displays: applying profile enabling 2 of 2 connected output(s)\n"));
    EXPECT_EQ(place_of("A"), (wlr_box{800, 0, 1280, 704}));
    EXPECT_EQ(place_of("B"), (wlr_box{0, 0, 800, 600}));
    EXPECT_EQ(output("B").usable, (wlr_box{0, 0, 800, 600}));
}

TEST_F(saved_displays, are_arranged_anew_when_one_is_unplugged)
{
    save("[docked]\noutput A disable\noutput B enable\n[alone]\noutput A enable\n");
    plug("A", 1280, 704);
    plug("B", 800, 600);
    EXPECT_FALSE(is_lit("A"));
    EXPECT_EQ(output("A").current_ws, nullptr);
    EXPECT_TRUE(is_lit("B"));
    unplug("B");
    EXPECT_TRUE(is_lit("A"));
    EXPECT_NE(output("A").current_ws, nullptr);
}

TEST_F(saved_displays, are_known_on_another_connector_by_their_id)
{
    plug({.name = "A", .width = 800, .height = 600, .serial = "77"});
    const std::string id = output_token_id(*output("A").wlr_output);
    unplug("A");
    save("[a]\noutput " + id + " enable scale 2\n");
    plug({.name = "B", .width = 800, .height = 600, .serial = "77"});
    EXPECT_EQ(output("B").wlr_output->scale, 2);
}

TEST_F(saved_displays, begin_at_0_0)
{
    save("[a]\noutput A enable position -1280 0\noutput B enable position 0 -5\n");
    plug("A", 1280, 704);
    plug("B", 800, 600);
    EXPECT_EQ(place_of("A"), (wlr_box{0, 5, 1280, 704}));
    EXPECT_EQ(place_of("B"), (wlr_box{1280, 0, 800, 600}));
    EXPECT_THAT(world.log(), HasSubstr("displays: anchored profile to 0,0 (shifted by 1280,5)\n"));
    EXPECT_THAT(world.log(), Not(HasSubstr("anchored live layout")));
}

TEST_F(saved_displays, are_moved_to_0_0_where_the_profile_leaves_one_elsewhere)
{
    plug("A", 1280, 704);
    plug("B", 800, 600);
    command("output B disable");
    command("output B position -500 0"); // nobody sees it there
    save("[a]\noutput A enable\noutput B enable\n");
    displays_autoapply(server);
    EXPECT_EQ(place_of("B").x, 0);
    EXPECT_EQ(place_of("A").x, 500);
}

TEST_F(saved_displays, may_overlap_as_the_user_wants)
{
    save("[a]\noutput A enable position 0 0\noutput B enable position 100 0\n");
    plug("A", 1280, 704);
    plug("B", 800, 600);
    EXPECT_EQ(place_of("B"), (wlr_box{100, 0, 800, 600}));
}

TEST_F(saved_displays, wait_until_the_displays_are_turned_on)
{
    save("[a]\noutput A enable\noutput B enable scale 2\n");
    plug("A", 1280, 704);
    set_dpms(server, false);
    plug("B", 800, 600);
    EXPECT_THAT(world.log(), Not(HasSubstr("applying profile")));
    EXPECT_FALSE(is_lit("B"));
    set_dpms(server, true);
    EXPECT_TRUE(is_lit("B"));
    EXPECT_EQ(output("B").wlr_output->scale, 2);
}

TEST_F(saved_displays, whose_arrangement_can_not_be_read_stay_as_they_are)
{
    save("\xff\x01[[[\n[\noutput\noutput A\noutput A enable position\noutput A frob\n");
    plug("A", 1280, 704);
    EXPECT_TRUE(is_lit("A"));
    EXPECT_EQ(place_of("A"), (wlr_box{0, 0, 1280, 704}));
}

TEST_F(saved_displays, that_come_and_go_often_are_arranged_each_time)
{
    save("[two]\noutput A enable position 0 0\noutput B enable position 1280 0\n[one]\noutput A enable "
         "position 0 0\n");
    plug("A", 1280, 704);
    map("w", {300, 200});
    for (int i = 0; i < 20; i++) {
        plug("B", 800, 600);
        ASSERT_EQ(place_of("B"), (wlr_box{1280, 0, 800, 600}));
        unplug("B");
        ASSERT_EQ(place_of("A"), (wlr_box{0, 0, 1280, 704}));
    }
}

} // namespace
