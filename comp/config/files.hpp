// Where configuration files lie, how they are opened, and the small pieces of their line grammars.
#pragma once

#include "../handles.hpp"

#include <cstdio>
#include <optional>
#include <span>

using config_file = handle<FILE, fclose>;

// Lines of the configuration that could not be used, in the current load.
inline int g_config_errors;

// The directory without a slash at its end, cut where it does not fit. 512 bytes are usual.
void config_dir(std::span<char> buf);

// "DIRECTORY/NAME", cut where it does not fit. 600 bytes are usual.
void config_path(std::span<char> buf, const char *name);

// For reading. Null for what is missing, unreadable or no regular file: a FIFO in a file's place would block.
config_file config_open(const char *path);

// Trims in place. Leading blanks and tabs are skipped, trailing blanks, tabs, newlines and returns are cut.
char *cfg_trim(char *s);

// Cuts the line at its first '#', wherever it stands, and trims it.
char *cfg_without_comment(char *line);

struct cfg_pair {
    char *key, *value;
};
// Splits at the first '=', both sides trimmed; nothing without one. The pieces lie in the line.
std::optional<cfg_pair> cfg_split(char *line);

// The next line with a pair, read on from where the file stands; nothing at its end. A line that is longer
// than the buffer is read as several. The pieces lie in the buffer.
std::optional<cfg_pair> config_next_pair(FILE &file, std::span<char> line);

// Exactly "true", "1" or "yes".
bool cfg_bool(const char *value);

// Text that is no number is 0, what follows a number is ignored, and what no int holds is the nearest that
// one does.
int cfg_int(const char *value);

// The same for a fraction, within what a float holds; "nan" is no number.
double cfg_fraction(const char *value);
