// Pictures come from anywhere, so their files may be hostile. The size in the file's header is checked before
// anything of that size is allocated, and no block that stb_image allocates exceeds what a picture of that
// size needs: compressed data may claim to be far larger than its picture.

#include "picture_file.hpp"

#include "../descriptors.hpp"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <cstring>
#include <span>
#include <string_view>
#include <sys/stat.h>
#include <webp/decode.h>
#include <webp/demux.h>

static constexpr size_t decoder_state_bytes = size_t{1} << 20; // what decoders need besides pixels
// Four channels of 16 bits take 8. The decoder of interlaced PNG files doubles a block that is slightly
// smaller than their data.
static constexpr size_t decoder_pixel_bytes = 17;
// A file may have a hole of any size, which costs its maker nothing.
static constexpr off_t longest_file = off_t{512} << 20;

static thread_local size_t t_block_limit;

static void *allocate_block(size_t size)
{
    return size <= t_block_limit ? malloc(size) : nullptr;
}

static void *reallocate_block(void *block, size_t size)
{
    return size <= t_block_limit ? realloc(block, size) : nullptr;
}

#define STBI_MALLOC(size) allocate_block(size)
#define STBI_REALLOC(block, size) reallocate_block(block, size)
#define STBI_FREE(block) free(block)
#define STBI_ONLY_BMP
#define STBI_ONLY_GIF
#define STBI_ONLY_JPEG
#define STBI_ONLY_PNG
#define STBI_NO_FAILURE_STRINGS
#define STB_IMAGE_STATIC
#define STB_IMAGE_IMPLEMENTATION
#include <stb_image.h>

static bool is_allowed_size(int width, int height)
{
    return width >= 1 && height >= 1 && width <= longest_picture_side && height <= longest_picture_side &&
           int64_t{width} * height <= most_picture_pixels;
}

// Not a FILE, because the C library takes the locks of all FILEs when the process ends. A worker that waits
// for a slow disk would then hold up the end of the session.
class picture_source
{
public:
    explicit picture_source(const char *path) : file{open_regular_file(path)} {}
    // Returns the length of the file, or 0 if there is none or it is too long.
    [[nodiscard]] size_t length() const
    {
        struct stat status{};
        const bool known = file.fd >= 0 && fstat(file.fd, &status) == 0;
        return known && status.st_size <= longest_file ? size_t(status.st_size) : 0;
    }
    void rewind()
    {
        offset = 0;
        at = end = 0;
        past_end = false;
    }
    // Returns how much there was.
    size_t read(std::span<char> into)
    {
        size_t taken = 0;
        while (taken < into.size() && (at < end || refill())) {
            const size_t length = std::min(into.size() - taken, end - at);
            memcpy(&into[taken], &buffer[at], length);
            taken += length;
            at += length;
        }
        past_end = past_end || (taken == 0 && !into.empty());
        return taken;
    }
    // Goes back for a negative length.
    void skip(off_t length)
    {
        offset = std::max<off_t>(offset - off_t(end - at) + length, 0);
        at = end = 0;
    }
    // Whether more was read than there is.
    [[nodiscard]] bool is_past_end() const { return past_end; }

private:
    bool refill()
    {
        const ssize_t length = pread(file.fd, buffer.data(), buffer.size(), offset);
        at = 0;
        end = length > 0 ? size_t(length) : 0;
        offset += off_t(end);
        return end > 0;
    }

    descriptor file;
    off_t offset = 0; // of what follows the buffer
    std::array<char, 16384> buffer{};
    size_t at = 0, end = 0; // what is left of the buffer
    bool past_end = false;
};

// Turns straight RGBA bytes into what cairo draws.
static void premultiply(std::span<unsigned char> bytes)
{
    for (; !bytes.empty(); bytes = bytes.subspan(4)) {
        const unsigned alpha = bytes[3];
        const auto scaled = [alpha](unsigned channel) {
            return static_cast<unsigned char>(channel * alpha / 255);
        };
        const unsigned char red = scaled(bytes[0]);
        bytes[0] = scaled(bytes[2]);
        bytes[1] = scaled(bytes[1]);
        bytes[2] = red;
    }
}

// The surface takes over the pixels, so that a large picture is in memory only once.
static picture surface_of_pixels(unsigned char *rgba, int width, int height)
{
    static const cairo_user_data_key_t pixels_key{};
    const int stride = width * 4;
    premultiply({rgba, size_t(stride) * size_t(height)});
    picture surface{cairo_image_surface_create_for_data(rgba, CAIRO_FORMAT_ARGB32, width, height, stride)};
    if (cairo_surface_set_user_data(surface.get(), &pixels_key, rgba, free) != CAIRO_STATUS_SUCCESS) {
        free(rgba);
        return nullptr;
    }
    cairo_surface_mark_dirty(surface.get());
    return surface;
}

static int read_some(void *data, char *bytes, int size)
{
    return int(static_cast<picture_source *>(data)->read({bytes, size_t(size)}));
}

static void skip_some(void *data, int size)
{
    static_cast<picture_source *>(data)->skip(size);
}

static int is_at_end(void *data)
{
    return static_cast<picture_source *>(data)->is_past_end() ? 1 : 0;
}

// stb_image takes zeros for what a truncated file lacks, so the source notes when something is missing.
static picture decode_with_stb(picture_source &from)
{
    static constexpr stbi_io_callbacks callbacks{.read = read_some, .skip = skip_some, .eof = is_at_end};
    int width = 0, height = 0, channels = 0;
    t_block_limit = decoder_state_bytes;
    if (stbi_info_from_callbacks(&callbacks, &from, &width, &height, &channels) == 0 || from.is_past_end() ||
        !is_allowed_size(width, height))
        return nullptr;
    from.rewind();
    t_block_limit += size_t(width) * size_t(height) * decoder_pixel_bytes + 2 * from.length();
    handle<unsigned char, free> pixels{
        stbi_load_from_callbacks(&callbacks, &from, &width, &height, &channels, STBI_rgb_alpha)};
    // The file may have changed since its header was read.
    if (pixels == nullptr || from.is_past_end() || !is_allowed_size(width, height))
        return nullptr;
    return surface_of_pixels(pixels.release(), width, height);
}

static bool decode_still(const WebPData &data, cairo_surface_t *surface)
{
    WebPDecoderConfig config{};
    if (WebPInitDecoderConfig(&config) == 0)
        return false;
    const int stride = cairo_image_surface_get_stride(surface);
    config.output.colorspace = MODE_bgrA; // premultiplied
    config.output.is_external_memory = 1;
    config.output.u.RGBA = {.rgba = cairo_image_surface_get_data(surface),
                            .stride = stride,
                            .size = size_t(stride) * size_t(cairo_image_surface_get_height(surface))};
    return WebPDecode(data.bytes, data.size, &config) == VP8_STATUS_OK;
}

static bool decode_first_frame(const WebPData &data, cairo_surface_t *surface)
{
    WebPAnimDecoderOptions options{};
    if (WebPAnimDecoderOptionsInit(&options) == 0)
        return false;
    options.color_mode = MODE_bgrA;
    const handle<WebPAnimDecoder, WebPAnimDecoderDelete> decoder{WebPAnimDecoderNew(&data, &options)};
    WebPAnimInfo canvas{};
    const auto width = uint32_t(cairo_image_surface_get_width(surface));
    const auto height = uint32_t(cairo_image_surface_get_height(surface));
    if (decoder == nullptr || WebPAnimDecoderGetInfo(decoder.get(), &canvas) == 0 ||
        canvas.canvas_width != width || canvas.canvas_height != height)
        return false;
    uint8_t *pixels = nullptr;
    int time = 0;
    if (WebPAnimDecoderGetNext(decoder.get(), &pixels, &time) == 0)
        return false;
    memcpy(cairo_image_surface_get_data(surface), pixels, size_t(width) * height * 4);
    return true;
}

static picture decode_webp_data(const WebPData &data)
{
    WebPBitstreamFeatures features{};
    if (WebPGetFeatures(data.bytes, data.size, &features) != VP8_STATUS_OK ||
        !is_allowed_size(features.width, features.height))
        return nullptr;
    picture surface{cairo_image_surface_create(CAIRO_FORMAT_ARGB32, features.width, features.height)};
    if (cairo_surface_status(surface.get()) != CAIRO_STATUS_SUCCESS)
        return nullptr;
    const bool decoded = features.has_animation != 0 ? decode_first_frame(data, surface.get())
                                                     : decode_still(data, surface.get());
    if (!decoded)
        return nullptr;
    cairo_surface_mark_dirty(surface.get());
    return surface;
}

static picture decode_webp(picture_source &from)
{
    const size_t length = from.length();
    const handle<char, free> bytes{static_cast<char *>(malloc(length))};
    if (bytes == nullptr || from.read({bytes.get(), length}) != length)
        return nullptr;
    return decode_webp_data({.bytes = reinterpret_cast<const uint8_t *>(bytes.get()), .size = length});
}

static bool is_webp(picture_source &from)
{
    std::array<char, 12> start{};
    const size_t length = from.read(start);
    from.rewind();
    const std::string_view text{start.data(), length};
    return text.starts_with("RIFF") && text.ends_with("WEBP");
}

picture load_image_surface(const char *path)
{
    picture_source from{path};
    if (from.length() == 0)
        return nullptr;
    return is_webp(from) ? decode_webp(from) : decode_with_stb(from);
}
