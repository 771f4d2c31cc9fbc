// Pictures come from anywhere, so their files may be hostile. The size in the file's header is checked before
// anything of that size is allocated, and no block that stb_image allocates exceeds what a picture of that
// size needs: compressed data may claim to be far larger than its picture.

#include "picture_file.hpp"

#include "../config/files.hpp"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <cstring>
#include <span>
#include <string_view>
#include <webp/decode.h>
#include <webp/demux.h>

static constexpr size_t decoder_state_bytes = size_t{1} << 20; // what decoders need besides pixels
static constexpr size_t decoder_pixel_bytes = 8; // four channels of 16 bits
static constexpr size_t longest_webp_file = size_t{256} << 20;

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

static size_t length_of(FILE &file)
{
    const bool found = fseeko(&file, 0, SEEK_END) == 0;
    const off_t length = found ? ftello(&file) : 0;
    fseeko(&file, 0, SEEK_SET);
    return length > 0 ? size_t(length) : 0;
}

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

struct reading {
    FILE *file;
    bool past_end = false;
};

// stb_image takes zeros for what a truncated file lacks, so the missing data is noted here.
static int read_some(void *data, char *bytes, int size)
{
    auto &from = *static_cast<reading *>(data);
    const size_t length = fread(bytes, 1, size_t(size), from.file);
    from.past_end = from.past_end || length == 0;
    return int(length);
}

static void skip_some(void *data, int size)
{
    fseeko(static_cast<reading *>(data)->file, size, SEEK_CUR);
}

static int is_at_end(void *data)
{
    return static_cast<reading *>(data)->past_end ? 1 : 0;
}

static picture decode_with_stb(FILE &file)
{
    static constexpr stbi_io_callbacks callbacks{.read = read_some, .skip = skip_some, .eof = is_at_end};
    reading from{.file = &file};
    int width = 0, height = 0, channels = 0;
    t_block_limit = decoder_state_bytes;
    if (stbi_info_from_callbacks(&callbacks, &from, &width, &height, &channels) == 0 || from.past_end ||
        !is_allowed_size(width, height))
        return nullptr;
    t_block_limit += size_t(width) * size_t(height) * decoder_pixel_bytes + 2 * length_of(file);
    handle<unsigned char, free> pixels{
        stbi_load_from_callbacks(&callbacks, &from, &width, &height, &channels, STBI_rgb_alpha)};
    // The file may have changed since its header was read.
    if (pixels == nullptr || from.past_end || !is_allowed_size(width, height))
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

static picture decode_webp(FILE &file)
{
    const size_t length = length_of(file);
    if (length == 0 || length > longest_webp_file)
        return nullptr;
    const handle<unsigned char, free> bytes{static_cast<unsigned char *>(malloc(length))};
    if (bytes == nullptr || fread(bytes.get(), 1, length, &file) != length)
        return nullptr;
    return decode_webp_data({.bytes = bytes.get(), .size = length});
}

static bool is_webp(FILE &file)
{
    std::array<char, 12> start{};
    const size_t length = fread(start.data(), 1, start.size(), &file);
    fseeko(&file, 0, SEEK_SET);
    const std::string_view text{start.data(), length};
    return text.starts_with("RIFF") && text.ends_with("WEBP");
}

picture decode_picture(FILE &file)
{
    return is_webp(file) ? decode_webp(file) : decode_with_stb(file);
}

picture load_image_surface(const char *path)
{
    const config_file file = config_open(path);
    return file != nullptr ? decode_picture(*file) : nullptr;
}
