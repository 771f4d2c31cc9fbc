#include "shared_buffer.hpp"

#include "errors.hpp"
#include "json.hpp"

#include <cerrno>
#include <cstring>
#include <drm_fourcc.h>
#include <linux/dma-buf.h>
#include <sys/ioctl.h>
#include <sys/mman.h>
#include <unistd.h>

// The place of the pixels in the buffer, in bytes. A pixel is blue, green, red and a byte without meaning.
struct pixel_place {
    long width = 0, height = 0, offset = 0, stride = 0;
    [[nodiscard]] size_t end() const { return size_t(offset + stride * height); }
};

static bool is_sound(const pixel_place &p)
{
    return is_size_of_picture(p.width, p.height, p.stride) && p.offset >= 0 && p.offset <= INT32_MAX;
}

static std::expected<pixel_place, std::string> place_of_pixels(const frame &description)
{
    const json meta = parse_reply(description.payload);
    if (!member_is_true(meta, "ok"))
        return wrong("the compositor could not capture that");
    const long format = member_number(meta, "format");
    if (format != DRM_FORMAT_XRGB8888 && format != DRM_FORMAT_ARGB8888)
        return wrong("the buffer's pixels are in a format that this program does not know");
    if (member_number(meta, "modifier") != DRM_FORMAT_MOD_LINEAR || member_number(meta, "planes") != 1)
        return wrong("the buffer's pixels are not in rows, and only the GPU can read them");
    const pixel_place p{.width = member_number(meta, "w"),
                        .height = member_number(meta, "h"),
                        .offset = first_number(meta, "offset"),
                        .stride = first_number(meta, "stride")};
    const bool large_enough = !description.attached.empty() && is_sound(p) &&
                              lseek(description.attached[0].get(), 0, SEEK_END) >= off_t(p.end());
    return large_enough ? std::expected<pixel_place, std::string>{p}
                        : wrong("the answer does not describe a picture");
}

// Tells the driver when the processor reads. The beginning waits until the GPU has drawn the picture. Memory
// that does not know the call needs neither.
static bool tell_driver(int buffer, uint64_t when)
{
    dma_buf_sync sync{.flags = when | DMA_BUF_SYNC_READ};
    int result = 0;
    do {
        result = ioctl(buffer, DMA_BUF_IOCTL_SYNC, &sync);
    } while (result < 0 && (errno == EINTR || errno == EAGAIN));
    return result == 0 || errno == ENOTTY;
}

static void copy_pixels(const uint8_t *from, const pixel_place &p, uint8_t *to)
{
    for (long y = 0; y < p.height; y++) {
        const uint8_t *row = from + p.offset + y * p.stride;
        for (const uint8_t *end = row + p.width * 4; row < end; row += 4, to += 4) {
            to[0] = row[2];
            to[1] = row[1];
            to[2] = row[0];
            to[3] = 0xff;
        }
    }
}

std::expected<straight_pixels, std::string> read_buffer(const frame &description)
{
    const auto place = place_of_pixels(description);
    if (!place)
        return wrong(place.error());
    straight_pixels result{place->width, place->height, nullptr};
    if (!make_room(result))
        return wrong("there is not enough memory for the picture");
    const int buffer = description.attached[0].get();
    void *memory = mmap(nullptr, place->end(), PROT_READ, MAP_SHARED, buffer, 0);
    if (memory == MAP_FAILED)
        return system_error("can't map the buffer");
    const bool readable = tell_driver(buffer, DMA_BUF_SYNC_START);
    if (readable)
        copy_pixels(static_cast<const uint8_t *>(memory), *place, result.rgba.get());
    const std::string why = readable ? "" : strerror(errno);
    tell_driver(buffer, DMA_BUF_SYNC_END);
    munmap(memory, place->end());
    return readable ? std::expected<straight_pixels, std::string>{std::move(result)}
                    : wrong("can't read the buffer: " + why);
}
