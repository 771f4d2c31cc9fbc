// The user's settings, as data that everybody reads and only the configuration writes.
#pragma once

#include "../workspaces/workspace.hpp"

#include <array>

inline bool g_vrr; // adaptive sync on outputs that appear
inline bool g_presentation_time; // offer the presentation-time protocol; read once at the start
inline bool g_animations;
inline bool g_force_effects; // keep effects on under software rendering

// The keyboard; texts are as XKB takes them, empty for the system's default.
inline std::array<char, 64> g_kb_layout, g_kb_variant;
inline std::array<char, 128> g_kb_options;
inline int g_kb_repeat_rate = 25; // a second
inline int g_kb_repeat_delay = 600; // ms

// Pointing devices; accelerations from -1 to 1.
inline bool g_tap_to_click, g_tp_nat_scroll, g_nat_scroll, g_accel_flat, g_left_handed, g_tablet_left_handed;
inline float g_tp_accel, g_pointer_accel;
inline std::array<char, 64> g_touch_output; // a name, "desktop", "auto" or empty

inline vantore_layout g_default_layout;
inline double g_default_master; // the master tile's share of the width
inline bool g_accent_set;
inline std::array<float, 4> g_accent; // red, green, blue, alpha

// Brings every setting to its default.
void config_load();
