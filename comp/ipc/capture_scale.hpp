// Makes pictures smaller by nearest-neighbour sampling. It works on plain memory, without a compositor.
#pragma once

#include <cstddef>
#include <cstdint>

struct capture_size {
    int width, height;
    friend bool operator==(const capture_size &, const capture_size &) = default;
};

// Returns the size at which a picture is delivered. Its longest side shrinks to max_dim, and 0 means no
// limit. A picture is never enlarged, and no side falls below 1.
capture_size capture_fit(capture_size source, int max_dim);

// Copies a picture of four-byte pixels, and samples it if the sizes differ. The rows of the source lie
// `stride` bytes apart, and those of the target are packed.
void capture_sample(const void *source, capture_size source_size, size_t stride, void *target,
                    capture_size target_size);
