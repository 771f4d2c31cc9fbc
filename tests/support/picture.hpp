// Pictures of a session: their pixels, PNG files, and comparison with a golden picture.
#pragma once

#include <cstdint>
#include <filesystem>
#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace test
{

struct image {
    int width = 0, height = 0;
    std::vector<uint32_t> argb; // rows from the top, not premultiplied

    [[nodiscard]] uint32_t at(int x, int y) const;
    // Returns an empty picture if the file can't be read as a PNG.
    static image load(const std::filesystem::path &path);
    [[nodiscard]] bool save(const std::filesystem::path &path) const;
};

struct difference {
    size_t pixels = 0; // differ by more than the tolerance in any channel
    int largest = 0; // largest difference in a channel
    image picture; // differing pixels white, the others dark
};

// Pictures of different sizes differ in every pixel.
difference compare(const image &actual, const image &expected, int tolerance);

// Compares with tests/data/golden/NAME.png. On a mismatch, writes NAME.actual.png and NAME.diff.png into
// VANTORE_TEST_OUTPUT or the current directory, and the message says so. With VANTORE_UPDATE_GOLDEN=1 it
// writes the golden picture instead. Look at that picture before you keep it.
testing::AssertionResult matches_golden(const image &actual, const std::string &name, int tolerance);

} // namespace test
