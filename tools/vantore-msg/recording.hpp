// Writes what a window draws into a folder.
#pragma once

#include "arguments.hpp"
#include "connection.hpp"

// Records until the window closes, all pictures are written or the user interrupts. `reply` answers the
// request. Returns a line that says how many pictures were written and how many were missed.
std::expected<std::string, std::string> record(const request &r, connection &compositor, const frame &reply);
