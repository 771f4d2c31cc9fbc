// Reads the memory files of snapshots.
#pragma once

#include "picture.hpp"

#include <sys/stat.h>
#include <unistd.h>

namespace test
{

// Returns the picture in the file and closes it. Fails the test if the file has another size.
inline image read_snapshot(int file, int w, int h)
{
    struct stat about{};
    fstat(file, &about);
    image picture{.width = w, .height = h, .argb = {}};
    EXPECT_EQ(about.st_size, off_t{w} * h * 4);
    picture.argb.resize(size_t(about.st_size) / 4);
    EXPECT_EQ(pread(file, picture.argb.data(), size_t(about.st_size), 0), about.st_size);
    close(file);
    for (uint32_t &p : picture.argb) // from bytes in the order red, green, blue, alpha
        p = (p & 0xff00ff00) | (p & 0xff) << 16 | (p >> 16 & 0xff);
    return picture;
}

} // namespace test
