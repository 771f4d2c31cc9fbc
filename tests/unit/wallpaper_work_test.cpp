// The queue of pictures that workers decode.

#include "outputs/wallpaper_work.hpp"
#include "platform.hpp"
#include "support/held_workers.hpp"
#include "support/isolation.hpp"
#include "support/picture_files.hpp"

#include <filesystem>
#include <gmock/gmock.h>
#include <poll.h>

using test::g_held;
using test::hold_workers;
using test::run_workers;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

namespace
{

size_t open_descriptors()
{
    const std::filesystem::directory_iterator list{"/proc/self/fd"};
    return size_t(std::distance(begin(list), end(list)));
}

struct wallpaper_work : testing::Test {
    test::isolation world;
    std::string path =
        test::write_file(world.directory() / "red.png", test::png_file(test::plain_image(4, 4, 0xffff0000)));
    descriptor results{-1};
    std::shared_ptr<wp_queue> queue = wp_queue_create(results);

    ~wallpaper_work() override { run_workers(); }

    void submit(const std::string &output, uint64_t gen = 0) const
    {
        auto job = std::make_unique<wp_job>();
        job->output = output;
        job->gen = gen;
        job->path = path;
        job->width = 20;
        job->height = 10;
        wp_queue_submit(queue, std::move(job));
    }
    // The outputs and generations of the jobs that have come back.
    [[nodiscard]] std::vector<std::string> finished() const
    {
        std::vector<std::string> jobs;
        while (const auto job = wp_queue_take(results.fd))
            jobs.push_back(job->output + std::to_string(job->gen));
        return jobs;
    }
};

TEST_F(wallpaper_work, hands_back_a_picture_of_the_wanted_size)
{
    hold_workers();
    submit("A", 7);
    run_workers();
    const auto job = wp_queue_take(results.fd);
    ASSERT_NE(job, nullptr);
    EXPECT_EQ(job->output, "A");
    EXPECT_EQ(job->gen, 7U);
    ASSERT_NE(job->result, nullptr);
    EXPECT_EQ(cairo_image_surface_get_width(job->result.get()), 20);
    EXPECT_EQ(cairo_image_surface_get_height(job->result.get()), 10);
    EXPECT_EQ(wp_queue_take(results.fd), nullptr);
}

TEST_F(wallpaper_work, hands_back_a_job_that_failed_without_a_picture)
{
    hold_workers();
    path = "/nonexistent.png";
    submit("A");
    run_workers();
    const auto job = wp_queue_take(results.fd);
    ASSERT_NE(job, nullptr);
    EXPECT_EQ(job->result, nullptr);
}

TEST_F(wallpaper_work, replaces_a_request_of_the_same_output_that_waits)
{
    hold_workers();
    for (uint64_t gen = 1; gen <= 100; gen++)
        submit("A", gen);
    submit("B", 101);
    EXPECT_THAT(queue->waiting, SizeIs(2));
    EXPECT_LE(g_held.size(), size_t{most_wallpaper_workers});
    run_workers();
    EXPECT_THAT(finished(), ElementsAre("A100", "B101"));
}

TEST_F(wallpaper_work, starts_only_a_few_workers)
{
    hold_workers();
    for (const char *output : {"A", "B", "C", "D"})
        submit(output);
    EXPECT_THAT(g_held, SizeIs(most_wallpaper_workers));
    run_workers();
    EXPECT_THAT(finished(), SizeIs(4));
    EXPECT_EQ(queue->workers, 0);
}

TEST_F(wallpaper_work, decodes_both_when_the_first_runs_already)
{
    submit("A", 1);
    while (true) { // until a worker has taken the first
        const std::lock_guard lock{queue->mutex};
        if (queue->waiting.empty())
            break;
    }
    submit("A", 2);
    std::vector<std::string> jobs;
    pollfd ready{.fd = results.fd, .events = POLLIN, .revents = 0};
    while (jobs.size() < 2 && poll(&ready, 1, 10'000) == 1)
        std::ranges::move(finished(), std::back_inserter(jobs));
    EXPECT_THAT(jobs, testing::UnorderedElementsAre("A1", "A2"));
}

TEST_F(wallpaper_work, forgets_a_job_that_no_thread_can_be_started_for)
{
    g_platform.start_worker = [](void (*)(void *), void *) { return false; };
    submit("A", 1);
    EXPECT_THAT(queue->waiting, IsEmpty());
    EXPECT_EQ(queue->workers, 0);
    hold_workers();
    submit("A", 2);
    run_workers();
    EXPECT_THAT(finished(), ElementsAre("A2"));
}

TEST_F(wallpaper_work, leaves_a_job_to_a_worker_that_runs_when_no_other_can_be_started)
{
    hold_workers();
    submit("A");
    g_platform.start_worker = [](void (*)(void *), void *) { return false; };
    submit("B");
    run_workers();
    EXPECT_THAT(finished(), ElementsAre("A0", "B0"));
}

TEST_F(wallpaper_work, does_not_wait_for_workers_at_the_end)
{
    hold_workers();
    submit("A");
    const std::weak_ptr<wp_queue> seen = queue;
    wp_queue_end(*queue, results.fd);
    results = descriptor{-1};
    queue.reset();
    EXPECT_FALSE(seen.expired()); // the worker still has it
    run_workers();
    EXPECT_TRUE(seen.expired());
}

// A worker that has begun its job finds out only when it wants to hand the result back.
TEST_F(wallpaper_work, drops_results_that_nobody_takes_any_more)
{
    hold_workers();
    submit("A");
    run_workers(); // lies in the pipe
    submit("B");
    wp_queue_end(*queue, results.fd);
    EXPECT_THAT(finished(), IsEmpty());
    queue->waiting.push_back(std::make_unique<wp_job>()); // as if it had been taken before the end
    run_workers();
    EXPECT_THAT(finished(), IsEmpty());
}

TEST_F(wallpaper_work, leaves_no_descriptors_behind)
{
    const size_t before = open_descriptors();
    {
        descriptor other_results{-1};
        const auto other = wp_queue_create(other_results);
        EXPECT_EQ(open_descriptors(), before + 2);
        wp_queue_end(*other, other_results.fd);
    }
    EXPECT_EQ(open_descriptors(), before);
}

} // namespace
