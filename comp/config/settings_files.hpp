// Reads the files of key = value lines: compositor.conf, input.conf, dock.conf, panel.conf, and
// appearance.conf, in which a '#' starts no comment.
#pragma once

#include "../fwd.hpp"

#include <span>

// The first two count unknown keys in g_config_errors, and the others ignore them. A file that can't be read
// leaves the settings as they are.
void config_parse_compositor(vantore_server &server, const char *path);
void config_parse_input(const char *path);
void config_parse_dock(const char *path);
void config_parse_panel(const char *path);

// Resets its settings before it reads the file, and chooses a wallpaper afterwards, whether or not there is a
// file. VANTORE_STANDARD_WALLPAPER in the environment names another standard picture, or none if it is empty.
void config_parse_appearance(const char *path);

// Puts in the standard picture if the text is empty and the picture can be read. "none" becomes empty.
void config_resolve_wallpaper(std::span<char> wallpaper, const char *standard);
