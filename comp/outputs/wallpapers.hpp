// What the server remembers for all wallpapers, as data.
#pragma once

#include "../descriptor.hpp"
#include "../handles.hpp"
#include "../timer.hpp"

#include <cstdint>
#include <memory>

struct wp_queue;

struct vantore_wallpapers {
    std::shared_ptr<wp_queue> queue; // null where no pipe could be made: then no picture is decoded
    descriptor results{-1}; // the read end of the queue's pipe
    event_source done; // watches it
    uint64_t last_gen = 0; // no two requests have the same, not even those of outputs with one name
    timer_source timer; // the next slide of any slide show
};
