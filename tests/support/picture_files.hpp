// Writes picture files for tests.
#pragma once

#include "picture.hpp"

#include <filesystem>
#include <string>
#include <string_view>

namespace test
{

// Returns a picture of one colour.
image plain_image(int width, int height, uint32_t argb);

// Files of one picture. The formats that lose details are written with their best quality.
std::string png_file(const image &content);
std::string jpeg_file(const image &content);
std::string bmp_file(const image &content);
std::string webp_file(const image &content);

// An animated WebP file.
std::string webp_file(const std::vector<image> &frames);

// A GIF of one pixel with two frames, the first red, the second blue.
std::string gif_file();

// Only the start of a BMP file with three bytes a pixel.
std::string bmp_header(int32_t width, int32_t height);

// A PNG of one pixel whose compressed data has this many bytes.
std::string inflated_png(size_t data_bytes);

std::filesystem::path write_file(const std::filesystem::path &path, std::string_view content);

} // namespace test
