// Where a picture goes on an output, and what is then seen.

#include "outputs/picture_scale.hpp"

#include <gmock/gmock.h>
#include <string>
#include <vector>

using testing::ElementsAre;

static std::ostream &operator<<(std::ostream &out, const picture_place &place)
{
    return out << place.x << ',' << place.y << " times " << place.scale_x << ',' << place.scale_y;
}

namespace
{

TEST(place_picture, fills_the_output_and_crops_what_is_left_over)
{
    EXPECT_EQ(place_picture({200, 100}, {100, 100}, WP_FILL), (picture_place{-50, 0, 1, 1}));
    EXPECT_EQ(place_picture({50, 100}, {100, 100}, WP_FILL), (picture_place{0, -50, 2, 2}));
}

TEST(place_picture, fits_into_the_output_between_bars)
{
    EXPECT_EQ(place_picture({200, 100}, {100, 100}, WP_FIT), (picture_place{0, 25, 0.5, 0.5}));
    EXPECT_EQ(place_picture({50, 100}, {100, 100}, WP_FIT), (picture_place{25, 0, 1, 1}));
}

TEST(place_picture, stretches_each_side_on_its_own)
{
    EXPECT_EQ(place_picture({200, 50}, {100, 100}, WP_STRETCH), (picture_place{0, 0, 0.5, 2}));
}

TEST(place_picture, centres_without_scaling_at_whole_pixels)
{
    EXPECT_EQ(place_picture({50, 20}, {100, 100}, WP_CENTER), (picture_place{25, 40, 1, 1}));
    EXPECT_EQ(place_picture({300, 101}, {100, 100}, WP_CENTER), (picture_place{-100, -1, 1, 1}));
}

// A picture of red, green, blue and white quarters.
picture quarters(int width, int height)
{
    picture image{cairo_image_surface_create(CAIRO_FORMAT_ARGB32, width, height)};
    const handle<cairo_t, cairo_destroy> cr{cairo_create(image.get())};
    const double w = width / 2.0, h = height / 2.0;
    const auto fill = [&](double x, double y, double red, double green, double blue) {
        cairo_set_source_rgb(cr.get(), red, green, blue);
        cairo_rectangle(cr.get(), x, y, w, h);
        cairo_fill(cr.get());
    };
    fill(0, 0, 1, 0, 0);
    fill(w, 0, 0, 1, 0);
    fill(0, h, 0, 0, 1);
    fill(w, h, 1, 1, 1);
    return image;
}

char letter(uint32_t pixel)
{
    switch (pixel) {
    case 0xffff0000:
        return 'r';
    case 0xff00ff00:
        return 'g';
    case 0xff0000ff:
        return 'b';
    case 0xffffffff:
        return 'w';
    case 0xff000000:
        return '.';
    default:
        return '?';
    }
}

// A letter for the pixel in the middle of each cell of ten by ten pixels.
std::vector<std::string> cells(const picture &shown)
{
    std::vector<std::string> rows;
    const unsigned char *data = cairo_image_surface_get_data(shown.get());
    const int stride = cairo_image_surface_get_stride(shown.get());
    for (int y = 5; y < cairo_image_surface_get_height(shown.get()); y += 10) {
        const auto *row = reinterpret_cast<const uint32_t *>(data + ptrdiff_t{y} * stride);
        std::string &text = rows.emplace_back();
        for (int x = 5; x < cairo_image_surface_get_width(shown.get()); x += 10)
            text += letter(row[x]);
    }
    return rows;
}

std::vector<std::string> landscape(picture_size output, wp_mode mode)
{
    return cells(scale_picture(quarters(80, 40).get(), output, mode));
}

std::vector<std::string> portrait(picture_size output, wp_mode mode)
{
    return cells(scale_picture(quarters(40, 80).get(), output, mode));
}

constexpr picture_size wide{80, 40}, tall{40, 80}, square{60, 60};

TEST(scale_picture, fills_outputs_of_all_shapes)
{
    EXPECT_THAT(landscape(wide, WP_FILL), ElementsAre("rrrrgggg", "rrrrgggg", "bbbbwwww", "bbbbwwww"));
    EXPECT_THAT(landscape(tall, WP_FILL),
                ElementsAre("rrgg", "rrgg", "rrgg", "rrgg", "bbww", "bbww", "bbww", "bbww"));
    EXPECT_THAT(landscape(square, WP_FILL),
                ElementsAre("rrrggg", "rrrggg", "rrrggg", "bbbwww", "bbbwww", "bbbwww"));
    EXPECT_THAT(portrait(wide, WP_FILL), ElementsAre("rrrrgggg", "rrrrgggg", "bbbbwwww", "bbbbwwww"));
    EXPECT_THAT(portrait(tall, WP_FILL),
                ElementsAre("rrgg", "rrgg", "rrgg", "rrgg", "bbww", "bbww", "bbww", "bbww"));
    EXPECT_THAT(portrait(square, WP_FILL),
                ElementsAre("rrrggg", "rrrggg", "rrrggg", "bbbwww", "bbbwww", "bbbwww"));
}

TEST(scale_picture, fits_between_black_bars_on_outputs_of_other_shapes)
{
    EXPECT_THAT(landscape(wide, WP_FIT), ElementsAre("rrrrgggg", "rrrrgggg", "bbbbwwww", "bbbbwwww"));
    EXPECT_THAT(landscape(tall, WP_FIT),
                ElementsAre("....", "....", "....", "rrgg", "bbww", "....", "....", "...."));
    EXPECT_THAT(landscape({60, 70}, WP_FIT),
                ElementsAre("......", "......", "rrrggg", "bbbwww", "bbbwww", "......", "......"));
    EXPECT_THAT(portrait(wide, WP_FIT), ElementsAre("...rg...", "...rg...", "...bw...", "...bw..."));
    EXPECT_THAT(portrait(tall, WP_FIT),
                ElementsAre("rrgg", "rrgg", "rrgg", "rrgg", "bbww", "bbww", "bbww", "bbww"));
    EXPECT_THAT(portrait({80, 80}, WP_FIT), ElementsAre("..rrgg..", "..rrgg..", "..rrgg..", "..rrgg..",
                                                        "..bbww..", "..bbww..", "..bbww..", "..bbww.."));
}

TEST(scale_picture, stretches_to_outputs_of_all_shapes)
{
    for (const auto &of : {landscape, portrait}) {
        EXPECT_THAT(of(wide, WP_STRETCH), ElementsAre("rrrrgggg", "rrrrgggg", "bbbbwwww", "bbbbwwww"));
        EXPECT_THAT(of(tall, WP_STRETCH),
                    ElementsAre("rrgg", "rrgg", "rrgg", "rrgg", "bbww", "bbww", "bbww", "bbww"));
        EXPECT_THAT(of(square, WP_STRETCH),
                    ElementsAre("rrrggg", "rrrggg", "rrrggg", "bbbwww", "bbbwww", "bbbwww"));
    }
}

TEST(scale_picture, centres_and_crops_on_outputs_of_all_shapes)
{
    EXPECT_THAT(landscape(wide, WP_CENTER), ElementsAre("rrrrgggg", "rrrrgggg", "bbbbwwww", "bbbbwwww"));
    EXPECT_THAT(landscape(tall, WP_CENTER),
                ElementsAre("....", "....", "rrgg", "rrgg", "bbww", "bbww", "....", "...."));
    EXPECT_THAT(landscape(square, WP_CENTER),
                ElementsAre("......", "rrrggg", "rrrggg", "bbbwww", "bbbwww", "......"));
    EXPECT_THAT(portrait(wide, WP_CENTER), ElementsAre("..rrgg..", "..rrgg..", "..bbww..", "..bbww.."));
    EXPECT_THAT(portrait(tall, WP_CENTER),
                ElementsAre("rrgg", "rrgg", "rrgg", "rrgg", "bbww", "bbww", "bbww", "bbww"));
    EXPECT_THAT(portrait(square, WP_CENTER),
                ElementsAre(".rrgg.", ".rrgg.", ".rrgg.", ".bbww.", ".bbww.", ".bbww."));
}

TEST(scale_picture, does_not_darken_the_edges_of_an_enlarged_picture)
{
    const picture shown = scale_picture(quarters(2, 2).get(), {100, 100}, WP_FILL);
    const unsigned char *data = cairo_image_surface_get_data(shown.get());
    EXPECT_EQ(reinterpret_cast<const uint32_t *>(data)[0], 0xffff0000);
    EXPECT_EQ(reinterpret_cast<const uint32_t *>(data)[99], 0xff00ff00);
}

TEST(scale_picture, puts_see_through_parts_on_black)
{
    const picture clear{cairo_image_surface_create(CAIRO_FORMAT_ARGB32, 1, 1)};
    const picture shown = scale_picture(clear.get(), {10, 10}, WP_FILL);
    EXPECT_THAT(cells(shown), ElementsAre("."));
}

TEST(scale_picture, gives_nothing_for_a_size_that_can_not_be)
{
    EXPECT_EQ(scale_picture(quarters(2, 2).get(), {100'000, 1}, WP_FILL), nullptr);
}

} // namespace
