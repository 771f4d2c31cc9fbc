// The fixed children of the scene root.
#pragma once

#include "fwd.hpp"

// Creates the eleven children. Returns false if one can't be made.
bool scene_graph_create(vantore_server &server);

// Colours the snap preview with the accent, if one is set.
void scene_graph_apply_accent(vantore_server &server);
