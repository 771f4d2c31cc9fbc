// The initial contents of configuration files.
#pragma once

#include <span>

struct default_text {
    const char *file;
    const char *text;
};

// Returns the texts in the order in which they are written.
std::span<const default_text> default_texts();

// Writes the files that the directory lacks. Existing files stay, whatever they are, and failures are
// ignored.
void config_write_defaults(const char *dir);
