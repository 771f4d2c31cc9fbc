// Stores, resets and limits the settings by the rows of their table.
#pragma once

#include "files.hpp"
#include "settings_table.hpp"

// Stores a line's value. Returns false for an unknown key. Only compositor.conf needs the server; with null,
// the settings in the server's record stay as they are.
bool settings_take(setting_file file, const cfg_pair &line, vantore_server *server);

// Resets the file's settings to their defaults, except those that a load keeps.
void settings_reset(setting_file file);

// Resets the settings that a load keeps to their defaults. Call it when a session starts.
void settings_begin(vantore_server &server);

// Brings the file's numbers inside their limits.
void settings_clamp(setting_file file);

// Returns the record of the output of this name, which is cut if it does not fit. Adds a record if there is
// none yet, and returns null if there is no room for it.
wp_override *wp_override_for(std::string_view name);
