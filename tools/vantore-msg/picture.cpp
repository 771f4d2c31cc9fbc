#include "picture.hpp"

#include "errors.hpp"
#include "json.hpp"

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <memory>
#include <new>
#include <png.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

struct close_file {
    void operator()(FILE *file) const { fclose(file); }
};
using stdio_file = std::unique_ptr<FILE, close_file>;

// Pixels in the compositor's file: premultiplied by alpha, rows from top to bottom.
struct shared_pixels {
    long width = 0, height = 0, stride = 0;
    const void *memory = MAP_FAILED;

    shared_pixels() = default;
    ~shared_pixels()
    {
        if (memory != MAP_FAILED)
            munmap(const_cast<void *>(memory), size_t(stride * height));
    }
    shared_pixels(const shared_pixels &) = delete;
    shared_pixels &operator=(const shared_pixels &) = delete;
};

bool is_size_of_picture(long width, long height, long stride)
{
    static constexpr long largest_side = 32768;
    return width >= 1 && width <= largest_side && height >= 1 && height <= largest_side &&
           stride >= width * 4 && stride <= largest_side * 8;
}

// Fails unless the file is large enough for the picture that the reply describes.
static std::expected<void, std::string> map_pixels(const frame &reply, shared_pixels &p)
{
    const json meta = parse_reply(reply.payload);
    if (!member_is_true(meta, "ok"))
        return wrong("the compositor could not capture that");
    p.width = member_number(meta, "w");
    p.height = member_number(meta, "h");
    p.stride = member_number(meta, "stride");
    struct stat file{};
    if (!is_size_of_picture(p.width, p.height, p.stride) || reply.attached.empty() ||
        fstat(reply.attached[0].get(), &file) != 0 || file.st_size < p.stride * p.height)
        return wrong("the answer does not describe a picture");
    p.memory = mmap(nullptr, size_t(p.stride * p.height), PROT_READ, MAP_SHARED, reply.attached[0].get(), 0);
    if (p.memory == MAP_FAILED)
        return system_error("can't look at the picture");
    return {};
}

static void undo_premultiplication(uint8_t *pixel)
{
    const unsigned alpha = pixel[3];
    if (alpha == 0xff)
        return;
    for (int i = 0; i < 3; i++)
        pixel[i] = alpha == 0 ? 0 : uint8_t(std::min(0xffU, (pixel[i] * 0xffU + alpha / 2) / alpha));
}

bool make_room(straight_pixels &p)
{
    p.rgba.reset(new (std::nothrow) uint8_t[size_t(p.width) * size_t(p.height) * 4]);
    return p.rgba != nullptr;
}

static std::expected<straight_pixels, std::string> straightened(const shared_pixels &p)
{
    const size_t row = size_t(p.width) * 4, bytes = row * size_t(p.height);
    straight_pixels result{p.width, p.height, nullptr};
    if (!make_room(result))
        return wrong("there is not enough memory for the picture");
    for (size_t y = 0; y < size_t(p.height); y++)
        memcpy(result.rgba.get() + y * row, static_cast<const char *>(p.memory) + y * size_t(p.stride), row);
    for (size_t at = 0; at < bytes; at += 4)
        undo_premultiplication(result.rgba.get() + at);
    return result;
}

std::expected<void, std::string> write_png(const straight_pixels &p, FILE *file)
{
    png_image image{};
    image.version = PNG_IMAGE_VERSION;
    image.width = png_uint_32(p.width);
    image.height = png_uint_32(p.height);
    image.format = PNG_FORMAT_RGBA;
    if (png_image_write_to_stdio(&image, file, 0, p.rgba.get(), 0, nullptr) == 0)
        return wrong(std::string{"can't write the picture: "} + image.message);
    if (fflush(file) != 0)
        return system_error("can't write the picture");
    return {};
}

std::expected<void, std::string> write_raw(const straight_pixels &p, FILE *file)
{
    const size_t bytes = size_t(p.width) * size_t(p.height) * 4;
    if (fwrite(p.rgba.get(), 1, bytes, file) != bytes || fflush(file) != 0)
        return system_error("can't write the picture");
    return {};
}

// Blocks signals. One that ended the program before a temporary file is renamed would leave the file behind.
class interruptions_held_back
{
public:
    interruptions_held_back()
    {
        sigset_t all;
        sigfillset(&all);
        sigprocmask(SIG_BLOCK, &all, &before);
    }
    ~interruptions_held_back() { sigprocmask(SIG_SETMASK, &before, nullptr); }
    interruptions_held_back(const interruptions_held_back &) = delete;
    interruptions_held_back &operator=(const interruptions_held_back &) = delete;

private:
    sigset_t before{};
};

// Writes a temporary file next to the target, so that renaming it is a single step.
std::expected<void, std::string> write_file(const straight_pixels &p, const std::string &path,
                                            pixel_writer write)
{
    const interruptions_held_back until_it_is_renamed;
    std::string unfinished = path + ".XXXXXX";
    const int fd = mkostemp(unfinished.data(), O_CLOEXEC);
    if (fd < 0)
        return system_error("can't write " + path);
    const stdio_file file{fdopen(fd, "wb")};
    if (file == nullptr) {
        close(fd);
        unlink(unfinished.c_str());
        return system_error("can't write " + path);
    }
    auto written = write(p, file.get());
    const mode_t mask = umask(0); // mkostemp made the file private, but the user's mask should decide
    umask(mask);
    if (written && (fchmod(fd, 0666 & ~mask) != 0 || rename(unfinished.c_str(), path.c_str()) != 0))
        written = system_error("can't write " + path);
    if (!written)
        unlink(unfinished.c_str());
    return written;
}

// The file that a link leads to. Fails for a device or a folder, because renaming would replace it by a file.
static std::expected<std::string, std::string> file_to_replace(const std::string &path)
{
    std::error_code missing;
    const std::filesystem::path target = std::filesystem::canonical(path, missing);
    if (missing)
        return path;
    if (!std::filesystem::is_regular_file(target, missing))
        return wrong(path + " is no regular file");
    return target.string();
}

std::expected<void, std::string> write_picture(const frame &reply, const std::string &file)
{
    shared_pixels shared;
    if (auto mapped = map_pixels(reply, shared); !mapped)
        return mapped;
    const auto pixels = straightened(shared);
    if (!pixels)
        return wrong(pixels.error());
    if (file == "-")
        return write_png(*pixels, stdout);
    const auto target = file_to_replace(file);
    return target ? write_file(*pixels, *target, write_png) : wrong(target.error());
}
