// The one layout function.
#pragma once

#include "../fwd.hpp"

// Lays a workspace's windows out. Idempotent. Null or a workspace on no output does nothing: it catches up
// when it is shown.
void arrange_workspace(vantore_workspace *ws);
