// A buffer in graphics memory, as a client of the IPC socket gets it.
#pragma once

#include "descriptor.hpp"
#include "ipc_client.hpp"
#include "picture.hpp"

#include <cstdio>
#include <sys/mman.h>
#include <unistd.h>

namespace test
{

// The software renderer's buffers have one plane.
struct handed_buffer {
    int w = 0, h = 0, planes = 0;
    unsigned format = 0, offset = 0, stride = 0, seq = 0;
    unsigned long long modifier = 0;
    long long ns = 0; // present_ns or t_ns
    descriptor file{-1};

    // Maps the buffer and returns what it holds now.
    [[nodiscard]] image picture() const
    {
        const size_t bytes = offset + size_t{stride} * size_t(h);
        void *memory = mmap(nullptr, bytes, PROT_READ, MAP_SHARED, file.fd, 0);
        if (memory == MAP_FAILED)
            return {};
        image result{.width = w, .height = h, .argb = {}};
        for (int y = 0; y < h; y++) {
            const auto *row = reinterpret_cast<const uint32_t *>(static_cast<const char *>(memory) + offset +
                                                                 size_t{stride} * size_t(y));
            for (int x = 0; x < w; x++)
                result.argb.push_back(row[x] | 0xff000000);
        }
        munmap(memory, bytes);
        return result;
    }
};

// Takes the description apart, and the buffer's descriptor from the client. Fails the test if the description
// is not in the one form that it can have.
inline handed_buffer take_buffer(const std::string &text, ipc_client &c)
{
    handed_buffer b;
    int begin = 0, end = 0;
    sscanf(text.c_str(), R"({"ok":true,"w":%d,"h":%d,"format":%u,"modifier":%llu,"planes":%d,%n)", &b.w, &b.h,
           &b.format, &b.modifier, &b.planes, &begin);
    const char *times = text.c_str() + begin;
    if (sscanf(times, R"("present_ns":%lld,%n)", &b.ns, &end) == 1 ||
        sscanf(times, R"("t_ns":%lld,"seq":%u,%n)", &b.ns, &b.seq, &end) == 2)
        times += end;
    end = 0;
    sscanf(times, R"("offset":[%u],"stride":[%u]}%n)", &b.offset, &b.stride, &end);
    EXPECT_TRUE(begin > 0 && end > 0 && times[end] == '\0') << text;
    EXPECT_EQ(b.planes, 1);
    b.file = descriptor{c.take_descriptor()};
    EXPECT_GE(b.file.fd, 0) << text;
    return b;
}

} // namespace test
