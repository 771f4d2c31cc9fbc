#include "capture_scale.hpp"

#include <algorithm>
#include <cstring>

static constexpr size_t pixel_size = 4;

capture_size capture_fit(capture_size source, int max_dim)
{
    if (max_dim == 0)
        return source;
    const double scale = double(max_dim) / std::max(source.width, source.height);
    if (scale >= 1)
        return source;
    return {.width = std::max(int(source.width * scale), 1),
            .height = std::max(int(source.height * scale), 1)};
}

static void sample_row(const char *source, int source_width, char *target, int target_width)
{
    for (int x = 0; x < target_width; x++) {
        const auto from = size_t(int64_t{x} * source_width / target_width);
        memcpy(target + size_t(x) * pixel_size, source + from * pixel_size, pixel_size);
    }
}

void capture_sample(const void *source, capture_size source_size, size_t stride, void *target,
                    capture_size target_size)
{
    const auto *from = static_cast<const char *>(source);
    auto *to = static_cast<char *>(target);
    const size_t row = size_t(target_size.width) * pixel_size;
    if (target_size == source_size && stride == row) {
        memcpy(to, from, row * size_t(target_size.height));
        return;
    }
    for (int y = 0; y < target_size.height; y++) {
        const auto source_y = size_t(int64_t{y} * source_size.height / target_size.height);
        const char *source_row = from + source_y * stride;
        char *target_row = to + size_t(y) * row;
        if (target_size.width == source_size.width)
            memcpy(target_row, source_row, row);
        else
            sample_row(source_row, source_size.width, target_row, target_size.width);
    }
}
