// Text from other programs, made fit for JSON parsers and terminals.
#pragma once

#include <string>
#include <string_view>
#include <vector>

// One line of valid UTF-8 without control characters, which could drive the terminal, and without those that
// turn the direction of writing, which could make it read as something else.
std::string printable(std::string_view text);

// Columns of a terminal that printable text takes.
int display_width(std::string_view text);

// Aligns the columns, two blanks apart, a line for each row; no blanks at the end of a line.
std::string aligned(const std::vector<std::vector<std::string>> &rows);

// Cuts the lines that are longer than so many columns of a terminal; 0 cuts none.
std::string cut_lines(std::string_view text, int columns);
