// Writes captured pixels, as PNG or as they are.
#pragma once

#include "connection.hpp"

#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>

// Writes the picture that came with a capture's reply. The file appears complete or not at all. "-" is the
// standard output.
std::expected<void, std::string> write_picture(const frame &reply, const std::string &file);

// Red, green, blue and straight alpha, without gaps between rows.
struct straight_pixels {
    long width = 0, height = 0;
    std::unique_ptr<uint8_t[]> rgba;
};

// Whether a picture can have this size. The stride is a row in bytes, of which each pixel takes four.
bool is_size_of_picture(long width, long height, long stride);

// Allocates the pixels of a picture whose size is set. Returns false without memory.
bool make_room(straight_pixels &p);

using pixel_writer = std::expected<void, std::string> (*)(const straight_pixels &pixels, FILE *file);
std::expected<void, std::string> write_png(const straight_pixels &pixels, FILE *file);
// Writes the bytes without a header.
std::expected<void, std::string> write_raw(const straight_pixels &pixels, FILE *file);

// Writes a file that appears complete or not at all.
std::expected<void, std::string> write_file(const straight_pixels &pixels, const std::string &path,
                                            pixel_writer write);
