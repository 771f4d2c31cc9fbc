// Captured pixels, written as PNG.
#pragma once

#include "connection.hpp"

#include <string>

// Writes the picture of a capture's reply. A file appears complete or not at all; "-" is the standard output.
std::expected<void, std::string> write_picture(const frame &reply, const std::string &file);
