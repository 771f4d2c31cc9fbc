// Owners of C objects. Each frees its object when it goes out of scope.
#pragma once

#include "wlr.hpp"

#include <memory>

template <auto Free> struct freed_by {
    template <class T> void operator()(T *object) const { Free(object); }
};
template <class T, auto Free> using handle = std::unique_ptr<T, freed_by<Free>>;

using event_source = handle<wl_event_source, wl_event_source_remove>;
using texture_handle = handle<wlr_texture, wlr_texture_destroy>;
using swapchain_handle = handle<wlr_swapchain, wlr_swapchain_destroy>;
using locked_buffer = handle<wlr_buffer, wlr_buffer_unlock>;

// An output state that finishes itself when it goes out of scope.
struct output_state : wlr_output_state {
    output_state() : wlr_output_state{} { wlr_output_state_init(this); }
    ~output_state() { wlr_output_state_finish(this); }
    output_state(const output_state &) = delete;
    output_state &operator=(const output_state &) = delete;
};
