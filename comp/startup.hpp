// The start as a table of named steps, the run, and the orderly end.
#pragma once

#include "fwd.hpp"

#include <span>
#include <string_view>

struct startup_step {
    std::string_view name;
    // False ends the start; the step has logged why. Null where there is only something to end.
    bool (*begin)(vantore_server &server);
    // Undoes the step at the session's end. Null where nothing is to be undone.
    void (*end)(vantore_server &server) = nullptr;
};

// In the order in which they begin: later steps rely on the earlier ones. They end in the opposite order.
std::span<const startup_step> startup_steps();

// Begins all steps. On false the process is to end with status 1: nothing is torn down. The record must be
// fresh.
bool server_start(vantore_server &server);

// Runs the event loop until a signal or wl_display_terminate ends it, also one that came before the loop.
void server_run(vantore_server &server);

// Ends all steps, the last one first. Once, after a start that returned true.
void server_finish(vantore_server &server);
