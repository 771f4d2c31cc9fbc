#include "picture_files.hpp"

#include <bit>
#include <cstdlib>
#include <fstream>
#include <webp/encode.h>
#include <webp/mux.h>

#define STB_IMAGE_WRITE_STATIC
#define STB_IMAGE_WRITE_IMPLEMENTATION
#include <stb_image_write.h>

namespace test
{

image plain_image(int width, int height, uint32_t argb)
{
    return {.width = width,
            .height = height,
            .argb = std::vector<uint32_t>(size_t(width) * size_t(height), argb)};
}

static std::vector<unsigned char> rgba_of(const image &content)
{
    std::vector<unsigned char> bytes;
    for (const uint32_t pixel : content.argb)
        for (const int shift : {16, 8, 0, 24})
            bytes.push_back(static_cast<unsigned char>(pixel >> shift));
    return bytes;
}

static void append(void *text, void *data, int size)
{
    static_cast<std::string *>(text)->append(static_cast<char *>(data), size_t(size));
}

std::string png_file(const image &content)
{
    std::string file;
    stbi_write_png_to_func(append, &file, content.width, content.height, 4, rgba_of(content).data(), 0);
    return file;
}

std::string jpeg_file(const image &content)
{
    std::string file;
    stbi_write_jpg_to_func(append, &file, content.width, content.height, 4, rgba_of(content).data(), 100);
    return file;
}

std::string bmp_file(const image &content)
{
    std::string file;
    stbi_write_bmp_to_func(append, &file, content.width, content.height, 4, rgba_of(content).data());
    return file;
}

std::string webp_file(const image &content)
{
    uint8_t *encoded = nullptr;
    const size_t size = WebPEncodeLosslessRGBA(rgba_of(content).data(), content.width, content.height,
                                               content.width * 4, &encoded);
    std::string file{reinterpret_cast<char *>(encoded), size};
    WebPFree(encoded);
    return file;
}

static void add_frame(WebPAnimEncoder *encoder, const image &frame, int time_ms)
{
    WebPPicture shown;
    WebPPictureInit(&shown);
    shown.use_argb = 1;
    shown.width = frame.width;
    shown.height = frame.height;
    WebPPictureImportRGBA(&shown, rgba_of(frame).data(), frame.width * 4);
    WebPConfig config;
    WebPConfigInit(&config);
    config.lossless = 1;
    WebPAnimEncoderAdd(encoder, &shown, time_ms, &config);
    WebPPictureFree(&shown);
}

std::string webp_file(const std::vector<image> &frames)
{
    WebPAnimEncoderOptions options;
    WebPAnimEncoderOptionsInit(&options);
    WebPAnimEncoder *encoder = WebPAnimEncoderNew(frames[0].width, frames[0].height, &options);
    int time_ms = 0;
    for (const image &frame : frames)
        add_frame(encoder, frame, 100 * time_ms++);
    WebPAnimEncoderAdd(encoder, nullptr, 100 * time_ms, nullptr);
    WebPData data{};
    WebPAnimEncoderAssemble(encoder, &data);
    std::string file{reinterpret_cast<const char *>(data.bytes), data.size};
    WebPDataClear(&data);
    WebPAnimEncoderDelete(encoder);
    return file;
}

// After the palette of red, blue and two unused colours, each frame is one pixel of compressed data.
std::string gif_file()
{
    using namespace std::string_literals;
    const std::string frame = "\x2c\0\0\0\0\1\0\1\0\0\2\2"s;
    return "GIF89a\1\0\1\0\x81\0\0"s + "\xff\0\0\0\0\xff\0\0\0\0\0\0"s + frame + "\x44\1\0"s + frame +
           "\x4c\1\0;"s;
}

static void append_number(std::string &file, uint32_t number)
{
    for (int byte = 0; byte < 4; byte++)
        file += static_cast<char>(number >> (8 * byte));
}

std::string bmp_header(int32_t width, int32_t height)
{
    std::string file = "BM";
    for (const uint32_t field : {0U, 0U, 54U, 40U, std::bit_cast<uint32_t>(width),
                                 std::bit_cast<uint32_t>(height), 0x180001U, 0U, 0U, 0U, 0U, 0U, 0U})
        append_number(file, field);
    return file;
}

static void append_chunk(std::string &file, std::string_view type, std::string_view content)
{
    std::string length;
    append_number(length, std::byteswap(uint32_t(content.size())));
    file += length;
    file += type;
    file += content;
    append_number(file, 0); // the decoder does not check the sum
}

std::string inflated_png(size_t data_bytes)
{
    std::vector<unsigned char> zeros(data_bytes);
    int size = 0;
    unsigned char *compressed = stbi_zlib_compress(zeros.data(), int(zeros.size()), &size, 8);
    std::string file = "\x89PNG\r\n\x1a\n";
    using namespace std::string_literals;
    append_chunk(file, "IHDR", "\0\0\0\1\0\0\0\1\x8\6\0\0\0"s);
    append_chunk(file, "IDAT", {reinterpret_cast<char *>(compressed), size_t(size)});
    append_chunk(file, "IEND", "");
    free(compressed);
    return file;
}

std::filesystem::path write_file(const std::filesystem::path &path, std::string_view content)
{
    std::ofstream{path, std::ios::binary} << content;
    return path;
}

} // namespace test
