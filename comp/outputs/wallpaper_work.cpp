#include "wallpaper_work.hpp"

#include "../platform.hpp"
#include "picture_scale.hpp"

#include <algorithm>
#include <fcntl.h>
#include <unistd.h>
#include <utility>

std::shared_ptr<wp_queue> wp_queue_create(descriptor &read_end)
{
    int ends[2];
    if (pipe2(ends, O_CLOEXEC | O_NONBLOCK) != 0)
        return nullptr;
    read_end = descriptor{ends[0]};
    auto queue = std::make_shared<wp_queue>();
    queue->results = descriptor{ends[1]};
    return queue;
}

static void do_job(wp_job &job)
{
    const picture image = load_image_surface(job.path.c_str());
    if (image != nullptr)
        job.result = scale_picture(image.get(), {.width = job.width, .height = job.height}, job.mode);
}

// What the pipe carries. It passes the ownership on.
struct result_message {
    wp_job *finished;
};

static void hand_back(wp_queue &queue, std::unique_ptr<wp_job> job)
{
    const std::lock_guard lock{queue.mutex};
    const result_message message{job.get()};
    if (!queue.ended && write(queue.results.fd, &message, sizeof message) == sizeof message) [[maybe_unused]]
        const wp_job *owned_by_pipe = job.release();
}

// Returns null if nothing waits. The worker that asked then counts as gone.
static std::unique_ptr<wp_job> next_job(wp_queue &queue)
{
    const std::lock_guard lock{queue.mutex};
    if (queue.waiting.empty()) {
        queue.workers--;
        return nullptr;
    }
    auto job = std::move(queue.waiting.front());
    queue.waiting.pop_front();
    return job;
}

static void wp_worker(void *data)
{
    const std::unique_ptr<std::shared_ptr<wp_queue>> owned{static_cast<std::shared_ptr<wp_queue> *>(data)};
    wp_queue &queue = **owned;
    while (auto job = next_job(queue)) {
        do_job(*job);
        hand_back(queue, std::move(job));
    }
}

// Returns true if one more worker may run, and counts it.
static bool enqueue(wp_queue &queue, std::unique_ptr<wp_job> job)
{
    const std::lock_guard lock{queue.mutex};
    std::erase_if(queue.waiting, [&](const auto &other) { return other->output == job->output; });
    queue.waiting.push_back(std::move(job));
    if (queue.workers >= most_wallpaper_workers)
        return false;
    queue.workers++;
    return true;
}

// Workers that run take the jobs that wait.
static void forget_worker(wp_queue &queue)
{
    const std::lock_guard lock{queue.mutex};
    if (--queue.workers == 0)
        queue.waiting.clear();
}

void wp_queue_submit(const std::shared_ptr<wp_queue> &queue, std::unique_ptr<wp_job> job)
{
    if (!enqueue(*queue, std::move(job)))
        return;
    auto owner = std::make_unique<std::shared_ptr<wp_queue>>(queue);
    if (g_platform.start_worker(wp_worker, owner.get())) [[maybe_unused]]
        const auto *owned_by_worker = owner.release();
    else
        forget_worker(*queue);
}

std::unique_ptr<wp_job> wp_queue_take(int read_end)
{
    result_message message{};
    const bool taken = read(read_end, &message, sizeof message) == sizeof message;
    return std::unique_ptr<wp_job>{taken ? message.finished : nullptr};
}

static void refuse_results(wp_queue &queue)
{
    const std::lock_guard lock{queue.mutex};
    queue.ended = true;
    queue.waiting.clear();
}

void wp_queue_end(wp_queue &queue, int read_end)
{
    refuse_results(queue);
    while (wp_queue_take(read_end) != nullptr) {
    }
}
