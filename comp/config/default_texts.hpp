// What the configuration files hold that the user does not have yet.
#pragma once

#include <span>

struct default_text {
    const char *file;
    const char *text;
};

// In the order in which they are written.
std::span<const default_text> default_texts();

// Writes those that are missing in the directory; what exists stays, whatever it is. Failures are passed
// over.
void config_write_defaults(const char *dir);
