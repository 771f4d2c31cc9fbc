// Decodes and scales wallpapers on worker threads. A worker knows its job and the queue, and nothing of the
// server. The queue belongs to the session and to its workers together, so the end of the session waits for
// no worker: the last one that ends frees the queue.
#pragma once

#include "../config/settings.hpp"
#include "../descriptor.hpp"
#include "picture_file.hpp"

#include <cstdint>
#include <deque>
#include <memory>
#include <mutex>
#include <string>

// A picture for an output. The output may vanish meanwhile, so the job has its name.
struct wp_job {
    std::string output;
    uint64_t gen = 0; // the output's at the time of the request
    std::string path;
    int width = 0, height = 0;
    wp_mode mode = WP_FILL;
    picture result; // null until it is done, and after a failure
};

struct wp_queue {
    std::mutex mutex; // guards all members
    std::deque<std::unique_ptr<wp_job>> waiting; // at most one for each output
    int workers = 0; // threads that run
    bool ended = false; // nobody takes results any more
    descriptor results{-1}; // the pipe's write end; carries pointers to finished jobs
};

inline constexpr int most_wallpaper_workers = 2;

// Returns a queue with the read end of its pipe, which does not block. Returns null if there are no
// descriptors left.
std::shared_ptr<wp_queue> wp_queue_create(descriptor &read_end);

// Starts a job, or lets it wait until a worker is free. It replaces a job of the same output that waits. It
// is dropped if no thread can be started for it.
void wp_queue_submit(const std::shared_ptr<wp_queue> &queue, std::unique_ptr<wp_job> job);

// Returns the next finished job, or null if there is none.
std::unique_ptr<wp_job> wp_queue_take(int read_end);

// Drops all jobs. Those that run now end later, without a result.
void wp_queue_end(wp_queue &queue, int read_end);
