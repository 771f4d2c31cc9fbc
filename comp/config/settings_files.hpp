// The files of key = value lines: compositor.conf, input.conf, dock.conf, panel.conf, and appearance.conf
// with its own grammar. A file that can't be read leaves the settings as they are.
#pragma once

#include "../fwd.hpp"

#include <span>

// Unknown keys are counted in g_config_errors in the first two, and ignored in the others.
void config_parse_compositor(vantore_server &server, const char *path);
void config_parse_input(const char *path);
void config_parse_dock(const char *path);
void config_parse_panel(const char *path);

// Resets its settings before, and settles on a wallpaper after, whether or not there is a file.
void config_parse_appearance(const char *path);

// Takes the standard picture where none is given, if it can be read; "none" becomes empty.
void config_resolve_wallpaper(std::span<char> wallpaper, const char *standard);
