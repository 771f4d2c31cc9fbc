// An owned file descriptor.
#pragma once

#include <unistd.h>
#include <utility>

struct descriptor {
    int fd = -1; // -1 for none

    explicit descriptor(int owned) : fd(owned) {}
    descriptor(descriptor &&other) noexcept : fd(std::exchange(other.fd, -1)) {}
    descriptor &operator=(descriptor &&other) noexcept
    {
        std::swap(fd, other.fd);
        return *this;
    }
    descriptor(const descriptor &) = delete;
    descriptor &operator=(const descriptor &) = delete;
    ~descriptor()
    {
        if (fd >= 0)
            close(fd);
    }
};
