// What the targets share: a condition that must hold, and input as a file.
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

// The path of the one file of the process, in memory, which each call fills anew.
inline const char *write_file(const uint8_t *data, size_t size)
{
    static const int fd = memfd_create("input", MFD_CLOEXEC);
    static char path[32];
    snprintf(path, sizeof path, "/proc/self/fd/%d", fd);
    require(ftruncate(fd, 0) == 0 && pwrite(fd, data, size, 0) == ssize_t(size));
    return path;
}
