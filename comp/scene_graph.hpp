// The fixed children of the scene root.
#pragma once

#include "fwd.hpp"

// Builds the eleven nodes. False when one can't be made.
bool scene_graph_create(vantore_server &server);

// Colours the snap preview with the accent, where the user chose one.
void scene_graph_apply_accent(vantore_server &server);
