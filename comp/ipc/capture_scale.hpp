// Making pictures smaller, by nearest-neighbour sampling. Plain memory, no compositor.
#pragma once

#include <cstddef>
#include <cstdint>

struct capture_size {
    int width, height;
    friend bool operator==(const capture_size &, const capture_size &) = default;
};

// The size at which a picture of this size is delivered: shrunk so that its longest side is max_dim, never
// enlarged, no side below 1. 0 is no limit.
capture_size capture_fit(capture_size source, int max_dim);

// Pixels of four bytes; the source's rows lie stride bytes apart, the target's are packed. A target of
// another size than the source samples it.
void capture_sample(const void *source, capture_size source_size, size_t stride, void *target,
                    capture_size target_size);
