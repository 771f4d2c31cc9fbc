// Commands with which scripts move the pointer, and commands that help to find faults.

#include "support/desktop.hpp"
#include "support/files.hpp"
#include "support/wayland_layer.hpp"
#include "support/wayland_seat.hpp"

#include "ipc/diagnostics.hpp"

#include <drm_fourcc.h>
#include <filesystem>
#include <fstream>
#include <sys/stat.h>

using test::seat;
using test::window;
using testing::ElementsAre;
using testing::EndsWith;
using testing::IsEmpty;

namespace
{

// A window of 400x300 at 100,100 with the focus, and the pointer outside of it.
struct scripted : test::desktop {
    void SetUp() override
    {
        desktop::SetUp();
        plug("A", 1280, 704);
        plug_pointer(); // clients have a pointer only where there is a device
        page = &map("page", {400, 300});
        place(*page, 100, 100);
        command("seat move 50 50");
        ears = std::make_unique<seat>(page->owner());
        settle();
        (void)ears->take();
        frames_before = ears->frames();
    }

    void TearDown() override
    {
        ears.reset();
        desktop::TearDown();
    }

    // Runs a command and returns what the client heard.
    std::vector<std::string> heard_of(const std::string &words)
    {
        command("seat " + words);
        settle();
        return ears->take();
    }

    void expect_cursor_at(double lx, double ly)
    {
        EXPECT_DOUBLE_EQ(server.cursor->x, lx);
        EXPECT_DOUBLE_EQ(server.cursor->y, ly);
    }

    int frames() { return ears->frames() - std::exchange(frames_before, ears->frames()); }

    window *page = nullptr;
    std::unique_ptr<seat> ears;
    int frames_before = 0;
};

TEST_F(scripted, move_points_at_a_place_of_the_layout)
{
    EXPECT_THAT(heard_of("move 150.5 160"), ElementsAre("pointer enter page 50.5,60"));
    EXPECT_THAT(heard_of("move 151 161"), ElementsAre("motion 51,61"));
}

TEST_F(scripted, move_keeps_what_it_is_not_given)
{
    command("seat move 150 160");
    command("seat move 170");
    expect_cursor_at(170, 160);
    command("seat move");
    expect_cursor_at(170, 160);
}

TEST_F(scripted, move_goes_to_the_nearest_place_on_an_output)
{
    command("seat move -100 300");
    expect_cursor_at(0, 300);
    command("seat move 1e300 -inf");
    EXPECT_NEAR(server.cursor->x, 1279, 1);
    EXPECT_EQ(server.cursor->y, 0);
}

TEST_F(scripted, move_counts_what_is_not_a_number_as_zero)
{
    command("seat move 200 200");
    command("seat move nan x");
    expect_cursor_at(0, 0);
}

TEST_F(scripted, move_works_while_no_output_is_there)
{
    unplug("A");
    settle();
    for (const char *words : {"move 1e300 1e300", "scroll 1e300 -1e300", "drag 0 0 inf nan", "click 5 5"})
        command(std::string{"seat "} + words);
    SUCCEED();
}

TEST_F(scripted, click_presses_and_releases_the_left_button_where_the_pointer_is)
{
    command("seat move 150 160");
    (void)frames();
    (void)ears->take();
    EXPECT_THAT(heard_of("click"), ElementsAre("button down 272", "button up 272"));
    EXPECT_EQ(frames(), 2);
}

TEST_F(scripted, click_goes_to_its_place_first)
{
    EXPECT_THAT(heard_of("click 150 160"),
                ElementsAre("pointer enter page 50,60", "button down 272", "button up 272"));
}

TEST_F(scripted, click_takes_a_button_and_a_place)
{
    EXPECT_THAT(heard_of("click right 150 160"),
                ElementsAre("pointer enter page 50,60", "button down 273", "button up 273"));
    expect_cursor_at(150, 160);
}

TEST_F(scripted, click_with_one_number_only_stays_where_it_is)
{
    command("seat move 150 160");
    settle();
    (void)ears->take();
    EXPECT_THAT(heard_of("click 300"), ElementsAre("button down 272", "button up 272"));
    EXPECT_THAT(heard_of("click middle 300"), ElementsAre("button down 274", "button up 274"));
    expect_cursor_at(150, 160);
}

TEST_F(scripted, buttons_have_names)
{
    command("seat move 150 160");
    settle();
    (void)ears->take();
    for (const auto &[name, code] : std::map<std::string, int>{
             {"left", 272}, {"right", 273}, {"middle", 274}, {"back", 275}, {"forward", 276}})
        EXPECT_THAT(heard_of("click " + name),
                    ElementsAre("button down " + std::to_string(code), "button up " + std::to_string(code)));
}

TEST_F(scripted, a_word_that_is_no_button_is_a_place)
{
    command("seat move 150 160");
    settle();
    (void)ears->take();
    EXPECT_THAT(heard_of("click Right 20"), ElementsAre("pointer leave page"));
    expect_cursor_at(0, 20);
}

TEST_F(scripted, dblclick_has_four_events_with_a_frame_each)
{
    command("seat move 150 160");
    settle();
    (void)ears->take();
    (void)frames();
    EXPECT_THAT(heard_of("dblclick back"),
                ElementsAre("button down 275", "button up 275", "button down 275", "button up 275"));
    EXPECT_EQ(frames(), 4);
}

TEST_F(scripted, press_and_release_are_one_half_each)
{
    EXPECT_THAT(heard_of("press 150 160"), ElementsAre("pointer enter page 50,60", "button down 272"));
    EXPECT_THAT(heard_of("move 50 50"), ElementsAre("motion -50,-50"));
    EXPECT_THAT(heard_of("release 160 170"), ElementsAre("motion 60,70", "button up 272"));
}

TEST_F(scripted, a_release_without_a_press_reaches_nobody)
{
    EXPECT_THAT(heard_of("release left 150 160"), ElementsAre("pointer enter page 50,60"));
}

TEST_F(scripted, a_press_focuses_and_raises_the_window_under_the_pointer)
{
    window &other = map("other", {200, 200});
    place(other, 700, 300);
    EXPECT_EQ(keyboard_focus(), tl_surface(record(other)));
    command("seat press 150 160");
    EXPECT_EQ(keyboard_focus(), tl_surface(record(*page)));
    EXPECT_EQ(each<&vantore_toplevel::link>(server.toplevels).first(), &record(*page));
    command("seat release");
}

TEST_F(scripted, a_release_focuses_nothing)
{
    window &other = map("other", {200, 200});
    place(other, 700, 300);
    command("seat release 150 160");
    EXPECT_EQ(keyboard_focus(), tl_surface(record(other)));
}

TEST_F(scripted, a_click_while_locked_reaches_the_client_and_moves_no_focus)
{
    window &other = map("other", {200, 200});
    place(other, 700, 300);
    settle();
    (void)ears->take();
    server.locked = true;
    EXPECT_THAT(heard_of("click 150 160"),
                ElementsAre("pointer enter page 50,60", "button down 272", "button up 272"));
    EXPECT_EQ(keyboard_focus(), tl_surface(record(other)));
    server.locked = false;
}

TEST_F(scripted, a_click_on_a_title_bar_goes_past_it)
{
    vantore_toplevel &t = record(*page);
    t.ssd = true;
    EXPECT_THAT(heard_of("click 480 85"), IsEmpty());
    settle();
    EXPECT_EQ(page->closes(), 0);
    EXPECT_EQ(server.drag.cursor_mode, VANTORE_CURSOR_PASSTHROUGH);
    t.ssd = false;
}

TEST_F(scripted, scroll_turns_the_wheel_by_notches)
{
    command("seat move 150 160");
    settle();
    (void)ears->take();
    (void)frames();
    EXPECT_THAT(heard_of("scroll -0.5 2"),
                ElementsAre("axis source 0", "axis120 0 240", "axis 0 30", "axis120 1 -60", "axis 1 -7.5"));
    EXPECT_EQ(frames(), 1);
}

TEST_F(scripted, scroll_by_nothing_sends_only_a_frame)
{
    command("seat move 150 160");
    settle();
    (void)ears->take();
    (void)frames();
    for (const char *words : {"scroll 0 0", "scroll", "scroll nan nan"}) {
        EXPECT_THAT(heard_of(words), IsEmpty()) << words;
        EXPECT_EQ(frames(), 1) << words;
    }
}

TEST_F(scripted, drag_goes_there_in_eight_steps)
{
    EXPECT_THAT(heard_of("drag 150 160 230 120 right"),
                ElementsAre("pointer enter page 50,60", "button down 273", "motion 60,55", "motion 70,50",
                            "motion 80,45", "motion 90,40", "motion 100,35", "motion 110,30", "motion 120,25",
                            "motion 130,20", "button up 273"));
}

TEST_F(scripted, drag_without_a_place_presses_and_releases_on_the_spot)
{
    command("seat move 150 160");
    settle();
    (void)ears->take();
    EXPECT_THAT(heard_of("drag"), ElementsAre("button down 272", "button up 272"));
    expect_cursor_at(150, 160);
}

TEST_F(scripted, drag_without_an_end_stays_at_its_start)
{
    (void)heard_of("drag 150 160");
    expect_cursor_at(150, 160);
    (void)heard_of("drag 180 170 200");
    expect_cursor_at(200, 170);
}

TEST_F(scripted, drag_with_an_unknown_button_takes_the_left_one)
{
    EXPECT_THAT(heard_of("drag 150 160 150 160 nose"), testing::Contains("button down 272"));
}

TEST_F(scripted, unknown_subcommands_do_nothing)
{
    command("seat move 150 160");
    settle();
    (void)ears->take();
    for (const char *words : {"", "jump 5 5", "Move 5 5", "clickk"})
        EXPECT_THAT(heard_of(words), IsEmpty()) << words;
    expect_cursor_at(150, 160);
}

TEST_F(scripted, events_carry_the_time_of_the_clock)
{
    command("seat move 150 160");
    command("seat press");
    EXPECT_EQ(server.seat->pointer_state.grab_time, uint32_t(world.clock_ms()));
    command("seat release");
}

// Layer dump

struct layer_dump : test::desktop {
    std::string dump()
    {
        command("dump-layers");
        return test::contents(world.layer_dump());
    }
};

TEST_F(layer_dump, without_layer_surfaces_is_an_empty_array)
{
    EXPECT_EQ(dump(), "[]\n");
}

TEST_F(layer_dump, lists_every_layer_surface)
{
    plug("A", 1280, 704);
    test::client &shell = connect();
    test::layer_surface wallpaper{shell,
                                  {.name = "wall", .on = test::layer::background, .anchor = test::ALL_EDGES}};
    test::layer_surface dock{shell,
                             {.name = "do\"ck", .size = {300, 50}, .anchor = test::BOTTOM, .opens = false}};
    settle();
    EXPECT_EQ(dump(), R"([{"ns":"do"ck","output":"A","layer":2,"x":0,"y":0,"w":0,"h":0,"mapped":false},)"
                      R"({"ns":"wall","output":"A","layer":0,"x":0,"y":0,"w":1280,"h":704,"mapped":true}])"
                      "\n");
    dock.commit();
    settle();
    EXPECT_THAT(dump(),
                testing::StartsWith(R"([{"ns":"do"ck","output":"A","layer":2,"x":490,"y":654,"w":300,"h":50,)"
                                    R"("mapped":true},)"));
}

TEST_F(layer_dump, replaces_what_was_written_before)
{
    std::ofstream{world.layer_dump()} << std::string(1000, 'x');
    EXPECT_EQ(dump(), "[]\n");
}

TEST_F(layer_dump, writes_neither_through_links_nor_into_pipes)
{
    const auto victim = world.directory() / "victim";
    std::ofstream{victim} << "mine";
    std::filesystem::create_symlink(victim, world.layer_dump());
    EXPECT_EQ(dump(), "mine");
    std::filesystem::remove(world.layer_dump());
    ASSERT_EQ(mkfifo(world.layer_dump().c_str(), 0600), 0);
    command("dump-layers"); // opening the pipe must not wait for a reader
    std::filesystem::remove(world.layer_dump());
    std::filesystem::create_directory(world.layer_dump());
    command("dump-layers");
}

// Capture probe

struct capture_probe : test::desktop {
    std::string last_line() const
    {
        const std::string log = world.log();
        const size_t line = log.rfind('\n', log.size() - 2) + 1;
        return log.substr(line, log.size() - line - 1);
    }
};

TEST_F(capture_probe, tells_a_window_without_gpu_memory_from_none)
{
    window &w = map("editor");
    command("capture-probe id:" + std::to_string(record(w).id));
    EXPECT_THAT(last_line(), EndsWith("] capture-probe id=1 app='editor': NOT a dmabuf (shm/other) — needs "
                                      "the composite-render path"));
    EXPECT_THAT(last_line(), testing::HasSubstr("[INFO]"));
    for (const auto &[words, id] : std::map<std::string, std::string>{{"capture-probe", "0"},
                                                                      {"capture-probe 1", "0"},
                                                                      {"capture-probe id:7", "7"},
                                                                      {"capture-probe id:x", "0"},
                                                                      {"capture-probe app:editor", "0"}}) {
        command(words);
        EXPECT_THAT(last_line(), EndsWith("] capture-probe id=" + id +
                                          ": no committed buffer (window absent or nothing drawn yet)"))
            << words;
    }
}

TEST_F(capture_probe, describes_the_memory_of_a_gpu_buffer)
{
    static constexpr wlr_buffer_impl on_gpu{
        .destroy = [](wlr_buffer *) {},
        .get_dmabuf =
            [](wlr_buffer *, wlr_dmabuf_attributes *attributes) {
                *attributes = {.width = 640,
                               .height = 480,
                               .format = DRM_FORMAT_XRGB8888,
                               .modifier = 0x1ff,
                               .n_planes = 2,
                               .offset = {},
                               .stride = {2560},
                               .fd = {}};
                return true;
            },
    };
    wlr_buffer buffer{};
    wlr_buffer_init(&buffer, &on_gpu, 640, 480);
    log_capture_way(3, nullptr, &buffer);
    EXPECT_THAT(last_line(), EndsWith("] capture-probe id=3 app='?': DMABUF ok — 640x480 format=XR24"
                                      "(0x34325258) modifier=0x00000000000001ff planes=2 stride0=2560  → "
                                      "FAST PATH viable"));
    wlr_buffer_finish(&buffer);
}

} // namespace
