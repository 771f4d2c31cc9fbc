// The start as a table of named steps, the run, and the orderly end.
#pragma once

#include "fwd.hpp"

#include <span>
#include <string_view>

struct startup_step {
    std::string_view name;
    // Returns false to end the start, after it has logged the reason. Null if the step only ends something.
    bool (*begin)(vantore_server &server);
    // Undoes the step when the session ends. Null if there is nothing to undo.
    void (*end)(vantore_server &server) = nullptr;
};

// The steps in the order in which they begin. Later steps rely on earlier ones. They end in reverse order.
std::span<const startup_step> startup_steps();

// Begins all steps. The record must be fresh. If it returns false, nothing is torn down and the process must
// exit with status 1.
bool server_start(vantore_server &server);

// Runs the event loop until a signal or wl_display_terminate ends it. A signal that arrived before the loop
// started also ends it.
void server_run(vantore_server &server);

// Ends all steps, the last one first. Call it once, after a start that returned true.
void server_finish(vantore_server &server);
