// Writes captured pixels as PNG.
#pragma once

#include "connection.hpp"

#include <string>

// Writes the picture that came with a capture's reply. The file appears complete or not at all. "-" is the
// standard output.
std::expected<void, std::string> write_picture(const frame &reply, const std::string &file);
