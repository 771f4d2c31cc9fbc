// What must hold between any two events, whatever came before.
#pragma once

#include "fwd.hpp"

#include <string>
#include <vector>

namespace test
{

// A layer surface takes the keyboard without a word to the window that had it.
enum class activity : bool { follows_keyboard, may_lag };

// A sentence for each rule that is broken; empty when all is well.
std::vector<std::string> server_check(vantore_server &server,
                                      activity active_windows = activity::follows_keyboard);

// The same for the usable boxes of the outputs that are on. Tests may make boxes up that break it.
std::vector<std::string> usable_check(vantore_server &server);

// The same for the tiles of the workspaces that are shown, which must have been arranged.
std::vector<std::string> tiles_check(vantore_server &server);

// The same for the quick lookup of what lies at a point, which must find what the scene itself finds.
std::vector<std::string> lookup_check(const vantore_server &server);

} // namespace test
