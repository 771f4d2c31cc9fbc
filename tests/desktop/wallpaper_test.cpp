// The picture that each output shows, and slide shows.

#include "support/desktop.hpp"
#include "support/held_workers.hpp"
#include "support/picture_files.hpp"
#include "support/places.hpp"
#include "support/wayland_layer.hpp"

#include "outputs/wallpaper.hpp"
#include "outputs/wallpaper_work.hpp"
#include "platform.hpp"
#include "reload.hpp"

#include <filesystem>
#include <set>
#include <sys/ioctl.h>
#include <sys/stat.h>

using std::chrono::seconds;
using test::g_held;
using test::hold_workers;
using test::run_workers;
using testing::SizeIs;

namespace
{

constexpr uint32_t red = 0xffff0000, green = 0xff00ff00, blue = 0xff0000ff, backdrop = 0xff0f121a;

int64_t g_wall_clock_s;

struct wallpaper : test::unstarted_desktop {
    std::filesystem::path pictures;

    void SetUp() override
    {
        unstarted_desktop::SetUp();
        pictures = world.directory() / "pictures";
        std::filesystem::create_directory(pictures);
        g_wall_clock_s = 1'000'000;
        g_platform.wall_clock_s = [] { return g_wall_clock_s; };
        start();
    }
    void TearDown() override
    {
        run_workers();
        EVENTUALLY(jobs() == 0);
        unstarted_desktop::TearDown();
    }

    std::string picture_file(const std::string &name, uint32_t argb, int width = 8, int height = 8) const
    {
        return test::write_file(pictures / name, test::png_file(test::plain_image(width, height, argb)));
    }
    void choose(const std::string &lines)
    {
        world.write_config("appearance.conf", lines);
        config_reload(server);
    }
    wlr_scene_buffer *node(const std::string &name) { return output(name).wallpaper.node; }
    // Shows a picture on all outputs.
    void show(const std::string &path)
    {
        choose("wallpaper = " + path + "\n");
        EVENTUALLY(jobs() == 0);
        settle();
    }

    // Jobs that wait, run, or lie in the pipe. A job that has not been handed back keeps its worker.
    int jobs()
    {
        if (server.wallpapers.queue == nullptr)
            return 0;
        const std::lock_guard lock{server.wallpapers.queue->mutex};
        int unread = 0;
        ioctl(server.wallpapers.results.fd, FIONREAD, &unread);
        const long shares = server.wallpapers.queue.use_count() - 1; // each worker has one until it ends
        return int(server.wallpapers.queue->waiting.size()) + int(shares) + unread;
    }

    // Lets time pass on both clocks, in steps of which each lets a slide show move on once.
    void pass(seconds time)
    {
        for (seconds step{}; time.count() > 0; time -= step) {
            step = std::min(time, seconds{5});
            g_wall_clock_s += step.count();
            run_clock(step);
        }
    }
    std::string slide(const std::string &name)
    {
        return std::filesystem::path{output(name).wallpaper.path}.filename();
    }
};

TEST_F(wallpaper, fills_the_output_below_everything_else)
{
    plug("A", 320, 200);
    show(picture_file("red.png", red));
    EVENTUALLY_EQ(pixel("A", 0, 0), red);
    EXPECT_EQ(pixel("A", 319, 199), red);
    const wlr_scene_buffer *shown = node("A");
    ASSERT_NE(shown, nullptr);
    EXPECT_EQ(shown->WLR_PRIVATE.buffer_width, 320);
    EXPECT_EQ(shown->WLR_PRIVATE.buffer_height, 200);
}

TEST_F(wallpaper, lies_below_what_clients_show_in_the_background)
{
    plug("A", 320, 200);
    const test::layer_surface other{connect(), {.on = test::layer::background, .size = {10, 10}}};
    settle();
    show(picture_file("red.png", red));
    const auto &children = server.layers[0]->children;
    EXPECT_EQ(owner_of<&wlr_scene_node::link>(children.next->next), &node("A")->node);
}

TEST_F(wallpaper, goes_to_each_output_and_moves_with_it)
{
    plug("A", 320, 200);
    plug("B", 200, 300);
    show(picture_file("red.png", red));
    ASSERT_NE(node("B"), nullptr);
    EXPECT_EQ(node("B")->node.x, 320);
    unplug("A");
    EXPECT_EQ(node("B")->node.x, output_layout_box(output("B")).x);
    EXPECT_EQ(wl_list_length(&server.layers[0]->children), 2);
}

TEST_F(wallpaper, is_there_for_an_output_that_appears_later)
{
    show(picture_file("red.png", red));
    plug("A", 320, 200);
    EVENTUALLY_EQ(pixel("A", 160, 100), red);
}

TEST_F(wallpaper, takes_no_input)
{
    plug("A", 320, 200);
    show(picture_file("red.png", red));
    double x = 0, y = 0;
    const wlr_scene_node *hit = wlr_scene_node_at(&server.scene->tree.node, 160, 100, &x, &y);
    EXPECT_NE(hit, &node("A")->node);
}

TEST_F(wallpaper, can_be_switched_off)
{
    plug("A", 320, 200);
    show(picture_file("red.png", red));
    EVENTUALLY_EQ(pixel("A", 1, 1), red);
    choose("wallpaper = none\n");
    EXPECT_EQ(node("A"), nullptr);
    EVENTUALLY_EQ(pixel("A", 1, 1), backdrop);
}

TEST_F(wallpaper, that_was_switched_off_does_not_return_with_a_late_result)
{
    plug("A", 320, 200);
    hold_workers();
    choose("wallpaper = " + picture_file("red.png", red) + "\n");
    choose("wallpaper = none\n");
    run_workers();
    EVENTUALLY(jobs() == 0);
    EXPECT_EQ(node("A"), nullptr);
}

TEST_F(wallpaper, is_the_standard_picture_where_none_is_chosen)
{
    setenv("VANTORE_STANDARD_WALLPAPER", picture_file("red.png", red).c_str(), 1);
    plug("A", 320, 200);
    choose("");
    EVENTUALLY_EQ(pixel("A", 1, 1), red);
    choose("wallpaper = none\n");
    EXPECT_EQ(node("A"), nullptr);
}

TEST_F(wallpaper, that_comes_with_the_compositor_is_dark_and_large)
{
    setenv("VANTORE_STANDARD_WALLPAPER", test::standard_wallpaper, 1);
    plug("A", 3840, 2160);
    choose("");
    EVENTUALLY(node("A") != nullptr);
    settle();
    const test::image shown = picture("A");
    std::set<uint32_t> colours{shown.argb.begin(), shown.argb.end()};
    EXPECT_GT(colours.size(), 1000U);
    size_t light = 0;
    for (const uint32_t pixel : shown.argb)
        light += (pixel >> 8 & 0xff) > 96 ? 1 : 0;
    EXPECT_LT(light, shown.argb.size() / 50);
}

TEST_F(wallpaper, differs_for_the_outputs_that_have_their_own)
{
    plug("A", 320, 200);
    plug("B", 320, 200);
    const std::string small = picture_file("green.png", green, 10, 10);
    choose("wallpaper = " + picture_file("red.png", red) + "\nwallpaper.B = " + small +
           "\nwallpaper_mode.B = center\n");
    EVENTUALLY_EQ(pixel("A", 1, 1), red);
    EVENTUALLY_EQ(pixel("B", 160, 100), green);
    EXPECT_EQ(pixel("B", 1, 1), 0xff000000U);
}

TEST_F(wallpaper, is_drawn_again_when_its_mode_changes)
{
    plug("A", 320, 200);
    const std::string path = picture_file("red.png", red, 10, 10);
    show(path);
    choose("wallpaper = " + path + "\nwallpaper_mode = center\n");
    EVENTUALLY_EQ(pixel("A", 1, 1), 0xff000000U);
}

TEST_F(wallpaper, with_bars_beside_a_tall_picture_looks_like_this)
{
    plug("A", 320, 200);
    choose("wallpaper = " + picture_file("tall.png", blue, 100, 200) + "\nwallpaper_mode = fit\n");
    EVENTUALLY_EQ(pixel("A", 160, 100), blue);
    for (const int x : {0, 109, 210, 319})
        EXPECT_EQ(pixel("A", x, 100), 0xff000000U) << x;
    for (const int x : {110, 209})
        EXPECT_EQ(pixel("A", x, 100), blue) << x;
}

TEST_F(wallpaper, is_decoded_for_the_new_size_of_its_output_and_stays_until_then)
{
    auto &a = plug("A", 320, 200);
    show(picture_file("red.png", red));
    const wlr_scene_buffer *before = node("A");
    hold_workers();
    request_size(a, 400, 300);
    EXPECT_EQ(node("A"), before);
    run_workers();
    EVENTUALLY(node("A") != before);
    EXPECT_EQ(node("A")->WLR_PRIVATE.buffer_width, 400);
}

TEST_F(wallpaper, starts_no_storm_of_workers_when_its_output_is_resized_again_and_again)
{
    auto &a = plug("A", 320, 200);
    show(picture_file("red.png", red));
    hold_workers();
    for (int i = 1; i <= 100; i++)
        request_size(a, 320 + i, 200);
    EXPECT_LE(g_held.size(), size_t{most_wallpaper_workers});
    EXPECT_THAT(server.wallpapers.queue->waiting, SizeIs(1));
    run_workers();
    EVENTUALLY(node("A")->WLR_PRIVATE.buffer_width == 420);
}

TEST_F(wallpaper, takes_only_the_result_of_the_latest_request)
{
    plug("A", 320, 200);
    hold_workers();
    choose("wallpaper = " + picture_file("red.png", red) + "\n");
    const uint64_t gen = output("A").wallpaper.gen;
    run_workers(); // its result lies in the pipe
    set_wallpaper(output("A"), true, false);
    EXPECT_GT(output("A").wallpaper.gen, gen);
    settle();
    EXPECT_EQ(node("A"), nullptr);
    run_workers();
    EVENTUALLY(node("A") != nullptr);
}

TEST_F(wallpaper, of_an_output_that_has_gone_is_dropped)
{
    plug("A", 320, 200);
    hold_workers();
    choose("wallpaper = " + picture_file("red.png", red) + "\n");
    run_workers(); // the result lies in the pipe
    unplug("A");
    EVENTUALLY(jobs() == 0);
}

TEST_F(wallpaper, of_an_output_that_has_gone_does_not_show_on_another_of_its_name)
{
    plug("A", 320, 200);
    hold_workers();
    choose("wallpaper = " + picture_file("red.png", red) + "\n");
    run_workers();
    unplug("A");
    plug("A", 640, 400); // its own request waits
    settle();
    EXPECT_EQ(node("A"), nullptr);
    run_workers();
    EVENTUALLY(node("A") != nullptr);
    EXPECT_EQ(node("A")->WLR_PRIVATE.buffer_width, 640);
}

TEST_F(wallpaper, stays_when_a_file_can_not_be_shown)
{
    plug("A", 320, 200);
    show(picture_file("red.png", red));
    const std::string fifo = pictures / "fifo.png";
    ASSERT_EQ(mkfifo(fifo.c_str(), 0600), 0);
    const std::string whole = test::png_file(test::plain_image(64, 64, green));
    const std::string cut = test::write_file(pictures / "cut.png", whole.substr(0, whole.size() / 2));
    const std::string text = test::write_file(pictures / "text.png", "no picture");
    for (const std::string &path : {std::string{"/nonexistent.png"}, fifo, cut, text}) {
        show(path);
        EXPECT_EQ(output("A").wallpaper.path, path);
        EXPECT_EQ(pixel("A", 1, 1), red) << path;
    }
}

TEST_F(wallpaper, is_decoded_anew_when_the_outputs_come_back_from_power_off)
{
    plug("A", 320, 200);
    show(picture_file("red.png", red));
    picture_file("red.png", green);
    command("dpms off");
    command("dpms on");
    EVENTUALLY_EQ(pixel("A", 1, 1), green);
}

TEST_F(wallpaper, holds_up_no_end_of_the_session)
{
    plug("A", 320, 200);
    hold_workers();
    choose("wallpaper = " + picture_file("red.png", red) + "\n");
    finish();
    run_workers(); // the pipe is closed with the last worker, which the fixture checks
}

TEST_F(wallpaper, changes_nothing_when_no_thread_can_be_started)
{
    plug("A", 320, 200);
    g_platform.start_worker = [](void (*)(void *), void *) { return false; };
    choose("wallpaper = " + picture_file("red.png", red) + "\n");
    settle();
    EXPECT_EQ(node("A"), nullptr);
    EXPECT_EQ(jobs(), 0);
}

// Slide shows

TEST_F(wallpaper, of_a_folder_changes_with_each_interval)
{
    plug("A", 320, 200);
    for (int i = 0; i < 40; i++)
        picture_file(std::to_string(i) + ".png", red);
    choose("wallpaper = " + pictures.string() + "\nwallpaper_interval = 60\n");
    std::vector<std::string> slides{slide("A")};
    pass(seconds{5}); // the first tick, from which the interval counts
    for (int i = 0; i < 32; i++) {
        pass(seconds{55});
        EXPECT_EQ(slide("A"), slides.back());
        pass(seconds{5});
        slides.push_back(slide("A"));
    }
    EXPECT_THAT((std::set<std::string>{slides.begin(), slides.end()}), SizeIs(33));
}

TEST_F(wallpaper, of_a_folder_waits_while_its_output_is_a_mirror)
{
    plug("A", 320, 200);
    plug("B", 320, 200);
    for (int i = 0; i < 20; i++)
        picture_file(std::to_string(i) + ".png", red);
    choose("wallpaper = " + pictures.string() + "\nwallpaper_interval = 60\n");
    pass(seconds{5});
    command("output A mirror output B");
    settle();
    EXPECT_FALSE(node("A")->node.enabled);
    const std::string before = output("A").wallpaper.path;
    const int64_t next = output("A").wallpaper.next_s;
    pass(seconds{60});
    EXPECT_EQ(output("A").wallpaper.path, before);
    EXPECT_EQ(output("A").wallpaper.next_s, next + 60);
    command("output A mirror off");
    settle();
    EXPECT_TRUE(node("A")->node.enabled);
}

TEST_F(wallpaper, of_a_folder_keeps_its_picture_when_the_output_changes)
{
    auto &a = plug("A", 320, 200);
    for (int i = 0; i < 20; i++)
        picture_file(std::to_string(i) + ".png", red);
    show(pictures);
    const std::string before = slide("A");
    request_size(a, 400, 300);
    set_wallpaper(output("A"), true, false);
    EXPECT_EQ(slide("A"), before);
}

TEST_F(wallpaper, comes_at_once_from_another_folder)
{
    plug("A", 320, 200);
    picture_file("red.png", red);
    show(pictures);
    const auto other = world.directory() / "other";
    std::filesystem::create_directory(other);
    test::write_file(other / "green.png", test::png_file(test::plain_image(4, 4, green)));
    show(other);
    EVENTUALLY_EQ(pixel("A", 1, 1), green);
}

TEST_F(wallpaper, of_a_folder_with_one_picture_stays)
{
    plug("A", 320, 200);
    picture_file("red.png", red);
    show(pictures);
    pass(seconds{5});
    for (int i = 0; i < 3; i++) {
        pass(seconds{600});
        EXPECT_EQ(slide("A"), "red.png");
    }
    EVENTUALLY_EQ(pixel("A", 1, 1), red);
}

TEST_F(wallpaper, of_a_folder_goes_when_the_folder_is_empty)
{
    plug("A", 320, 200);
    picture_file("green.png", green);
    show(pictures);
    EVENTUALLY(node("A") != nullptr);
    std::filesystem::remove(pictures / "green.png");
    pass(seconds{605});
    EXPECT_EQ(node("A"), nullptr);
    EXPECT_EQ(output("A").wallpaper.recent.count, 1U);
    picture_file("red.png", red);
    pass(seconds{600});
    EVENTUALLY_EQ(pixel("A", 1, 1), red);
}

TEST_F(wallpaper, of_a_folder_goes_on_after_an_unreadable_picture)
{
    plug("A", 320, 200);
    test::write_file(pictures / "bad.png", "no picture");
    show(pictures);
    EXPECT_EQ(slide("A"), "bad.png");
    picture_file("red.png", red);
    pass(seconds{605});
    EXPECT_EQ(slide("A"), "red.png");
    EVENTUALLY_EQ(pixel("A", 1, 1), red);
}

TEST_F(wallpaper, of_an_output_can_have_its_own_interval)
{
    plug("A", 320, 200);
    plug("B", 320, 200);
    for (int i = 0; i < 8; i++)
        picture_file(std::to_string(i) + ".png", red);
    choose("wallpaper = " + pictures.string() +
           "\nwallpaper_interval = 100\nwallpaper_interval.A = 20\nwallpaper_interval.B = 0\n");
    const std::string a = slide("A"), b = slide("B");
    pass(seconds{5});
    pass(seconds{20});
    EXPECT_NE(slide("A"), a);
    EXPECT_EQ(slide("B"), b);
    pass(seconds{80});
    EXPECT_NE(slide("B"), b);
}

TEST_F(wallpaper, starts_its_intervals_again_with_a_reload)
{
    plug("A", 320, 200);
    picture_file("red.png", red);
    picture_file("green.png", green);
    const std::string lines = "wallpaper = " + pictures.string() + "\nwallpaper_interval = 60\n";
    choose(lines);
    const std::string first = slide("A");
    pass(seconds{60});
    choose(lines);
    EXPECT_EQ(output("A").wallpaper.next_s, 0);
    EXPECT_EQ(slide("A"), first);
    pass(seconds{60});
    EXPECT_EQ(slide("A"), first);
    pass(seconds{5});
    EXPECT_NE(slide("A"), first);
}

TEST_F(wallpaper, goes_on_when_the_clock_is_put_back)
{
    plug("A", 320, 200);
    picture_file("red.png", red);
    picture_file("green.png", green);
    choose("wallpaper = " + pictures.string() + "\nwallpaper_interval = 60\n");
    const std::string first = slide("A");
    pass(seconds{10});
    g_wall_clock_s -= 500'000;
    pass(seconds{130});
    EXPECT_NE(slide("A"), first);
}

TEST_F(wallpaper, of_a_single_file_is_decoded_once)
{
    plug("A", 320, 200);
    show(picture_file("red.png", red));
    const uint64_t before = server.wallpapers.last_gen;
    pass(seconds{1300});
    EXPECT_EQ(server.wallpapers.last_gen, before);
    EXPECT_EQ(output("A").wallpaper.next_s, 0);
}

TEST_F(wallpaper, wakes_once_an_hour_without_a_slide_show)
{
    advance_clock_ms(5000);
    EXPECT_EQ(test::isolation::next_timer_ms(), 3'600'000);
}

size_t descriptors_open()
{
    const std::filesystem::directory_iterator list{"/proc/self/fd"};
    return size_t(std::distance(begin(list), end(list)));
}

TEST_F(wallpaper, of_fifty_slides_leaves_nothing_behind)
{
    plug("A", 320, 200);
    for (int i = 0; i < 50; i++)
        picture_file(std::to_string(i) + ".png", i % 2 == 0 ? red : green);
    show(pictures);
    settle();
    const size_t descriptors = descriptors_open();
    const int nodes = wl_list_length(&server.layers[0]->children);
    for (int i = 0; i < 50; i++) {
        set_wallpaper(output("A"), true, true);
        EVENTUALLY(jobs() == 0);
    }
    settle();
    EXPECT_EQ(descriptors_open(), descriptors);
    EXPECT_EQ(wl_list_length(&server.layers[0]->children), nodes);
}

} // namespace
