// Checks what must hold between any two events.
#pragma once

#include "fwd.hpp"

#include <string>
#include <vector>

namespace test
{

// A layer surface takes the keyboard without telling the window that had it. With may_lag, one window may be
// active without having the keyboard.
enum class activity : bool { follows_keyboard, may_lag };

// Returns a sentence for each broken rule, so nothing when all is well.
std::vector<std::string> server_check(vantore_server &server,
                                      activity active_windows = activity::follows_keyboard);

// Checks the usable boxes of the outputs that are on in the same way. Tests may make up boxes that break its
// rules.
std::vector<std::string> usable_check(vantore_server &server);

// Checks the tiles of the visible workspaces in the same way. They must have been arranged.
std::vector<std::string> tiles_check(vantore_server &server);

// Checks in the same way that the quick lookup at a point finds what the scene itself finds there.
std::vector<std::string> lookup_check(const vantore_server &server);

// Checks in the same way that a resting pointer is in the surface that lies under it. Nothing is checked
// while the pointer waits for the event loop, or while a client, a drag or a button holds it.
std::vector<std::string> pointer_check(vantore_server &server);

} // namespace test
