#include "picture.hpp"

#include "json.hpp"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <memory>
#include <png.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

static constexpr long largest_side = 32768;

struct close_file {
    void operator()(FILE *file) const { fclose(file); }
};
using stdio_file = std::unique_ptr<FILE, close_file>;

static std::unexpected<std::string> failed(const std::string &what)
{
    return std::unexpected{what + ": " + strerror(errno)};
}

struct pixels {
    long width = 0, height = 0, stride = 0;
    const void *memory = MAP_FAILED;

    pixels() = default;
    ~pixels()
    {
        if (memory != MAP_FAILED)
            munmap(const_cast<void *>(memory), size_t(stride * height));
    }
    pixels(const pixels &) = delete;
    pixels &operator=(const pixels &) = delete;
};

// What the reply says is believed only as far as the file is large enough for it.
static std::expected<void, std::string> map_pixels(const frame &reply, pixels &p)
{
    const json meta = parse_reply(reply.payload);
    if (!member_is_true(meta, "ok"))
        return std::unexpected{std::string{"the compositor could not capture that"}};
    p.width = member_number(meta, "w");
    p.height = member_number(meta, "h");
    p.stride = member_number(meta, "stride");
    const bool sound = p.width >= 1 && p.width <= largest_side && p.height >= 1 && p.height <= largest_side &&
                       p.stride >= p.width * 4 && p.stride <= largest_side * 8;
    struct stat file{};
    if (!sound || !reply.attached.is_open() || fstat(reply.attached.get(), &file) != 0 ||
        file.st_size < p.stride * p.height)
        return std::unexpected{std::string{"the answer does not describe a picture"}};
    p.memory = mmap(nullptr, size_t(p.stride * p.height), PROT_READ, MAP_SHARED, reply.attached.get(), 0);
    if (p.memory == MAP_FAILED)
        return failed("can't look at the picture");
    return {};
}

static std::expected<void, std::string> write_png(const pixels &p, FILE *file)
{
    png_image image{};
    image.version = PNG_IMAGE_VERSION;
    image.width = png_uint_32(p.width);
    image.height = png_uint_32(p.height);
    image.format = PNG_FORMAT_RGBA;
    if (png_image_write_to_stdio(&image, file, 0, p.memory, png_int_32(p.stride), nullptr) == 0)
        return std::unexpected{std::string{"can't write the picture: "} + image.message};
    if (fflush(file) != 0)
        return failed("can't write the picture");
    return {};
}

// Beside the file, so that renaming it is one step.
static std::expected<void, std::string> write_png_file(const pixels &p, const std::string &path)
{
    std::string unfinished = path + ".XXXXXX";
    const int fd = mkostemp(unfinished.data(), O_CLOEXEC);
    if (fd < 0)
        return failed("can't write " + path);
    const stdio_file file{fdopen(fd, "wb")};
    if (file == nullptr) {
        close(fd);
        unlink(unfinished.c_str());
        return failed("can't write " + path);
    }
    auto written = write_png(p, file.get());
    const mode_t mask = umask(0); // mkostemp made it private; the user's mask is to decide
    umask(mask);
    if (written && (fchmod(fd, 0666 & ~mask) != 0 || rename(unfinished.c_str(), path.c_str()) != 0))
        written = failed("can't write " + path);
    if (!written)
        unlink(unfinished.c_str());
    return written;
}

std::expected<void, std::string> write_picture(const frame &reply, const std::string &file)
{
    pixels p;
    if (auto mapped = map_pixels(reply, p); !mapped)
        return mapped;
    return file == "-" ? write_png(p, stdout) : write_png_file(p, file);
}
