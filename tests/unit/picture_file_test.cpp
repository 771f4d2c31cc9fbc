// Picture files become surfaces, and hostile files become nothing.

#include "outputs/picture_file.hpp"
#include "support/isolation.hpp"
#include "support/picture_files.hpp"

#include <gmock/gmock.h>
#include <sys/stat.h>

using test::image;
using test::write_file;

namespace
{

struct picture_file : testing::Test {
    test::isolation world;

    picture load(std::string_view content) const
    {
        return load_image_surface(write_file(world.directory() / "picture", content).c_str());
    }
};

uint32_t pixel(const picture &shown, int x, int y)
{
    const unsigned char *data = cairo_image_surface_get_data(shown.get());
    const auto row = size_t(y) * size_t(cairo_image_surface_get_stride(shown.get()));
    return reinterpret_cast<const uint32_t *>(data + row)[x];
}

// Five pixels wide and three high, with one pixel that differs from the others.
image five_by_three()
{
    image content = test::plain_image(5, 3, 0xff204060);
    content.argb[5 + 4] = 0xffffffff; // at 4, 1
    return content;
}

struct file_format {
    const char *name;
    std::string (*encode)(const image &content);
    bool exact;
};

class formats : public picture_file, public testing::WithParamInterface<file_format>
{
};

TEST_P(formats, are_known_by_their_content)
{
    const picture shown = load(GetParam().encode(five_by_three()));
    ASSERT_NE(shown, nullptr);
    EXPECT_EQ(cairo_image_surface_get_format(shown.get()), CAIRO_FORMAT_ARGB32);
    EXPECT_EQ(cairo_image_surface_get_width(shown.get()), 5);
    EXPECT_EQ(cairo_image_surface_get_height(shown.get()), 3);
    EXPECT_EQ(pixel(shown, 0, 0) >> 24, 0xffU);
    if (GetParam().exact) {
        EXPECT_EQ(pixel(shown, 0, 0), 0xff204060);
        EXPECT_EQ(pixel(shown, 4, 1), 0xffffffff);
    }
}

TEST_P(formats, give_nothing_when_the_file_is_cut)
{
    const std::string whole = GetParam().encode(five_by_three());
    for (size_t length = 0; length < whole.size(); length++)
        EXPECT_EQ(load(whole.substr(0, length)), nullptr) << length;
}

INSTANTIATE_TEST_SUITE_P(picture, formats,
                         testing::Values(file_format{"png", test::png_file, true},
                                         file_format{"jpeg", test::jpeg_file, false},
                                         file_format{"bmp", test::bmp_file, true},
                                         file_format{"webp", test::webp_file, true}),
                         [](const auto &instance) { return std::string{instance.param.name}; });

TEST_F(picture_file, shows_the_first_picture_of_an_animation)
{
    const picture gif = load(test::gif_file());
    ASSERT_NE(gif, nullptr);
    EXPECT_EQ(pixel(gif, 0, 0), 0xffff0000);
    const picture webp = load(test::webp_file(
        std::vector{test::plain_image(4, 4, 0xffff0000), test::plain_image(4, 4, 0xff0000ff)}));
    ASSERT_NE(webp, nullptr);
    EXPECT_EQ(pixel(webp, 3, 3), 0xffff0000);
}

TEST_F(picture_file, multiplies_colours_by_their_alpha)
{
    for (const auto encode : {test::png_file, test::webp_file}) {
        const picture shown = load(encode(test::plain_image(1, 1, 0x80c86432)));
        ASSERT_NE(shown, nullptr);
        EXPECT_EQ(pixel(shown, 0, 0), 0x80643219);
    }
    EXPECT_EQ(pixel(load(test::png_file(test::plain_image(1, 1, 0x00ffffff))), 0, 0), 0U);
}

TEST_F(picture_file, that_is_no_picture_gives_nothing)
{
    using namespace std::string_view_literals;
    for (const auto content : {""sv, "P"sv, "BM"sv, "GIF89a"sv, "\x89PNG\r\n\x1a\n"sv, "\xff\xd8\xff"sv,
                               "RIFF\0\0\0\0WEBP"sv, "text"sv})
        EXPECT_EQ(load(std::string{content}), nullptr) << content;
}

TEST_F(picture_file, with_a_huge_hole_gives_nothing)
{
    const auto path =
        write_file(world.directory() / "holed", test::png_file(test::plain_image(4, 4, 0xffff0000)));
    EXPECT_NE(load_image_surface(path.c_str()), nullptr);
    std::filesystem::resize_file(path, uintmax_t{1} << 40);
    EXPECT_EQ(load_image_surface(path.c_str()), nullptr);
}

TEST_F(picture_file, that_is_missing_or_unreadable_gives_nothing)
{
    EXPECT_EQ(load_image_surface("/nonexistent/picture.png"), nullptr);
    EXPECT_EQ(load_image_surface(world.directory().c_str()), nullptr);
    EXPECT_EQ(load_image_surface(""), nullptr);
}

// Opening a FIFO without a writer would block for ever, and a device may have no end.
TEST_F(picture_file, that_is_a_fifo_or_a_device_gives_nothing_at_once)
{
    const auto fifo = world.directory() / "fifo.png";
    ASSERT_EQ(mkfifo(fifo.c_str(), 0600), 0);
    EXPECT_EQ(load_image_surface(fifo.c_str()), nullptr);
    EXPECT_EQ(load_image_surface("/dev/zero"), nullptr);
}

static_assert(int64_t{11648} * 8736 <= most_picture_pixels, "cameras of 100 megapixels");

// The file is complete: without the limit it could be decoded.
TEST_F(picture_file, that_is_too_large_is_not_decoded)
{
    for (const auto &[width, height] : {std::pair{32768, 1}, {1, 32768}, {16384, 8193}}) {
        const auto path = write_file(world.directory() / "huge.bmp", test::bmp_header(width, height));
        std::filesystem::resize_file(path, 54 + size_t(width) * 4 * size_t(height));
        EXPECT_EQ(load_image_surface(path.c_str()), nullptr) << width << 'x' << height;
    }
    const auto path = write_file(world.directory() / "long.bmp", test::bmp_header(32767, 1));
    std::filesystem::resize_file(path, 54 + size_t{32768} * 3);
    EXPECT_NE(load_image_surface(path.c_str()), nullptr);
}

TEST_F(picture_file, that_inflates_beyond_its_picture_is_not_decoded)
{
    EXPECT_NE(load(test::inflated_png(5)), nullptr);
    EXPECT_EQ(load(test::inflated_png(size_t{16} << 20)), nullptr);
}

TEST_F(picture_file, damaged_anywhere_neither_crashes_nor_leaks)
{
    for (const auto encode : {test::png_file, test::jpeg_file, test::bmp_file, test::webp_file}) {
        const std::string whole = encode(five_by_three());
        for (size_t at = 0; at < whole.size(); at++) {
            std::string damaged = whole;
            damaged[at] = static_cast<char>(~damaged[at]);
            (void)load(damaged);
        }
    }
}

} // namespace
