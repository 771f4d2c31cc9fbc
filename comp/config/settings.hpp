// The user's settings, as data that everybody reads and only the configuration writes.
#pragma once

#include "../workspaces/workspace.hpp"

#include <array>

inline bool g_vrr; // adaptive sync on outputs that appear
inline bool g_presentation_time; // offer the presentation-time protocol; read once at the start
inline bool g_animations;
inline bool g_force_effects; // keep effects on under software rendering
inline vantore_layout g_default_layout;
inline double g_default_master; // the master tile's share of the width
inline bool g_accent_set;
inline std::array<float, 4> g_accent; // red, green, blue, alpha

// Brings every setting to its default.
void config_load();
