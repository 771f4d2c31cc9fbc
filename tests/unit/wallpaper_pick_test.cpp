// The choice of pictures for a slide show.

#include "outputs/wallpaper_pick.hpp"
#include "platform.hpp"
#include "support/isolation.hpp"
#include "support/picture_files.hpp"

#include <gmock/gmock.h>
#include <map>
#include <set>

using testing::Each;
using testing::Pair;
using testing::SizeIs;

namespace
{

TEST(is_picture_name, goes_by_the_suffix_in_any_case)
{
    for (const char *name : {"a.png", "a.jpg", "a.jpeg", "a.bmp", "a.webp", "a.gif", "A.PNG", "a.b.Jpg"})
        EXPECT_TRUE(is_picture_name(name)) << name;
    for (const char *name : {"", "a", "png", ".png", ".a.png", "a.", "a.txt", "a.png.txt", "a.pngx", "a.pn"})
        EXPECT_FALSE(is_picture_name(name)) << name;
}

struct wallpaper_pick : testing::Test {
    test::isolation world;
    std::string folder = world.directory() / "pictures";
    recent_pictures recent;

    void SetUp() override { std::filesystem::create_directory(folder); }
    void add(const std::string &name) const { test::write_file(folder + '/' + name, ""); }
    void add_pictures(int count) const
    {
        for (int i = 0; i < count; i++)
            add(std::to_string(i) + ".png");
    }
};

// Plays all sequences of random numbers for some candidates, one sequence a run: the k-th number is below k.
struct all_sequences {
    static inline std::vector<uint32_t> numbers;
    static inline size_t asked;

    explicit all_sequences(size_t candidates)
    {
        numbers.assign(candidates, 0);
        asked = 0;
        g_platform.random_below = [](uint32_t limit) {
            EXPECT_EQ(limit, asked + 1);
            return numbers.at(asked++);
        };
    }
    // Returns false after the last sequence.
    static bool next()
    {
        asked = 0;
        for (size_t k = 0; k < numbers.size(); k++) {
            if (++numbers[k] <= k)
                return true;
            numbers[k] = 0;
        }
        return false;
    }
};

TEST_F(wallpaper_pick, gives_all_pictures_the_same_chance)
{
    add_pictures(5);
    std::map<std::string, int> picks;
    all_sequences random{5};
    do
        picks[pick_random_image_ex(folder, {})]++;
    while (all_sequences::next());
    EXPECT_THAT(picks, SizeIs(5));
    EXPECT_THAT(picks, Each(Pair(testing::StartsWith(folder + '/'), 24))); // of 120 sequences
}

TEST_F(wallpaper_pick, gives_the_pictures_that_are_not_left_out_the_same_chance)
{
    add_pictures(5);
    std::map<std::string, int> picks;
    all_sequences random{4};
    do
        picks[pick_random_image_ex(folder, {.name = "3.png"})]++;
    while (all_sequences::next());
    EXPECT_THAT(picks, SizeIs(4));
    EXPECT_THAT(picks, Each(Pair(testing::Ne(folder + "/3.png"), 6))); // of 24 sequences
}

TEST_F(wallpaper_pick, passes_over_other_files)
{
    for (const char *name : {"text.txt", ".hidden.png", "png"})
        add(name);
    EXPECT_EQ(pick_random_image(recent, folder, ""), "");
    EXPECT_EQ(recent.count, 0U);
    add("picture.JPEG");
    EXPECT_EQ(pick_random_image(recent, folder, ""), folder + "/picture.JPEG");
}

TEST_F(wallpaper_pick, finds_nothing_where_there_is_no_folder)
{
    EXPECT_EQ(pick_random_image(recent, world.directory() / "missing", ""), "");
}

TEST_F(wallpaper_pick, repeats_nothing_within_32_pictures)
{
    add_pictures(33);
    std::vector<std::string> picks(150);
    for (size_t i = 0; i < picks.size(); i++)
        picks[i] = pick_random_image(recent, folder, i > 0 ? picks[i - 1] : "");
    for (size_t i = 0; i + 33 <= picks.size(); i++)
        EXPECT_THAT((std::set<std::string>{picks.begin() + ptrdiff_t(i), picks.begin() + ptrdiff_t(i) + 33}),
                    SizeIs(33));
    EXPECT_EQ(recent.count, 32U);
}

TEST_F(wallpaper_pick, never_shows_one_of_a_few_pictures_twice_in_a_row)
{
    add_pictures(2);
    std::string last;
    for (int i = 0; i < 50; i++) {
        const std::string path = pick_random_image(recent, folder, last);
        EXPECT_NE(path, last);
        last = path;
    }
}

TEST_F(wallpaper_pick, shows_the_only_picture_again)
{
    add("one.png");
    const std::string only = folder + "/one.png";
    EXPECT_EQ(pick_random_image(recent, folder, ""), only);
    EXPECT_EQ(pick_random_image_ex(folder, {.recent = &recent}), "");
    EXPECT_EQ(pick_random_image_ex(folder, {.name = "one.png"}), "");
    EXPECT_EQ(pick_random_image(recent, folder, only), only);
}

TEST_F(wallpaper_pick, remembers_the_last_32_names)
{
    EXPECT_FALSE(wp_recently_shown(recent, ""));
    for (int i = 0; i < 40; i++) {
        const std::string name = std::to_string(i) + ".png";
        add(name);
        EXPECT_EQ(pick_random_image(recent, folder, ""), folder + '/' + name);
        std::filesystem::remove(folder + '/' + name);
    }
    for (int i = 0; i < 40; i++)
        EXPECT_EQ(wp_recently_shown(recent, std::to_string(i) + ".png"), i >= 8) << i;
}

} // namespace
