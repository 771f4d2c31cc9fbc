// Finds and opens configuration files, and reads the small pieces of their line grammars.
#pragma once

#include "../handles.hpp"

#include <cstdio>
#include <optional>
#include <span>

using config_file = handle<FILE, fclose>;

// How many lines of the configuration the current load could not use.
inline int g_config_errors;

// Writes the path of the directory without a slash at its end. A path that does not fit is cut; callers
// usually pass 512 bytes.
void config_dir(std::span<char> buf);

// Writes "DIRECTORY/NAME". A path that does not fit is cut; callers usually pass 600 bytes.
void config_path(std::span<char> buf, const char *name);

// Opens a file for reading. Returns null if it is missing, unreadable or not a regular file, because a FIFO
// in its place would block.
config_file config_open(const char *path);

// Trims in place: skips leading blanks and tabs, and cuts trailing blanks, tabs, newlines and returns.
char *cfg_trim(char *s);

// Cuts the line at its first '#', wherever it stands, and trims it.
char *cfg_without_comment(char *line);

struct cfg_pair {
    char *key, *value;
};
// Splits the line at its first '=' and trims both sides, which stay in the line. Returns nothing if there is
// no '='.
std::optional<cfg_pair> cfg_split(char *line);

// Returns the next pair of the file, or nothing at its end. Lines without a pair are skipped, and a line that
// is longer than the buffer is read as several lines. The pair lies in the buffer.
std::optional<cfg_pair> config_next_pair(FILE &file, std::span<char> line);

// Returns true for exactly "true", "1" or "yes".
bool cfg_bool(const char *value);

// Text that is not a number gives 0, and text after a number is ignored. A number that does not fit gives the
// nearest int.
int cfg_int(const char *value);

// Does the same for a fraction, within the range of a float. "nan" gives 0.
double cfg_fraction(const char *value);
