// Carries the rows of the settings' table into the settings.
#pragma once

#include "files.hpp"
#include "settings_table.hpp"

// Stores a line's value. False for an unknown key. Only compositor.conf needs the server; null leaves what
// the server holds as it is.
bool settings_take(setting_file file, const cfg_pair &line, vantore_server *server);

// To the defaults, except those that a load keeps.
void settings_reset(setting_file file);

// Brings those that a load keeps to what a process begins with.
void settings_begin(vantore_server &server);

// Brings numbers inside their limits.
void settings_clamp(setting_file file);

// The record of the output of this name, cut where it does not fit; a new one where there is none yet. Null
// when there is no room for one more.
wp_override *wp_override_for(std::string_view name);
