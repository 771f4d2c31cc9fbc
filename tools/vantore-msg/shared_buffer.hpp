// Reads pictures out of buffers in graphics memory.
#pragma once

#include "connection.hpp"
#include "picture.hpp"

// Copies the picture that the frame describes. Fails if this program can't read such a buffer.
std::expected<straight_pixels, std::string> read_buffer(const frame &description);
