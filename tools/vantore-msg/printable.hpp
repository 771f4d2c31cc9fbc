// Makes text from other programs safe for JSON parsers and terminals.
#pragma once

#include <string>
#include <string_view>
#include <vector>

// Returns one line of valid UTF-8. It contains no control characters, which could drive the terminal, and
// none that turn the direction of writing, which could make the text look like a different one.
std::string printable(std::string_view text);

// How many columns of a terminal the printable text takes.
int display_width(std::string_view text);

// Returns one line for each row, with aligned columns two blanks apart and no blanks at the end of a line.
std::string aligned(const std::vector<std::vector<std::string>> &rows);

// Cuts lines that take more than this many columns of a terminal. 0 cuts none.
std::string cut_lines(std::string_view text, int columns);
