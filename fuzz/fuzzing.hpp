// Shared by the targets: a condition that must hold, and the input as a file.
#pragma once

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <sys/mman.h>
#include <unistd.h>

inline void require(bool holds)
{
    if (!holds)
        abort();
}

// Puts the data into a file in memory and returns its path. There is one such file, which each call rewrites.
inline const char *write_file(const uint8_t *data, size_t size)
{
    static const int fd = memfd_create("input", MFD_CLOEXEC);
    static char path[32];
    snprintf(path, sizeof path, "/proc/self/fd/%d", fd);
    require(ftruncate(fd, 0) == 0 && pwrite(fd, data, size, 0) == ssize_t(size));
    return path;
}
