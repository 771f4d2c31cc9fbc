// Pictures of windows that no screen shows, and the watch that tells of new ones.

#include "support/desktop.hpp"

#include "offscreen.hpp"
#include "surface_watch.hpp"

#include "viewporter-client-protocol.h"
#include <wayland-client.h>

namespace
{

constexpr uint32_t red = 0xffcc3311, teal = 0xff00c0c0, black = 0xff000000;

struct offscreen : test::desktop {
    void SetUp() override
    {
        test::desktop::SetUp();
        plug("A", 1280, 720);
        w = &map("window", {100, 80});
    }

    wlr_surface &surface() { return *tl_surface(record(*w)); }
    // Draws the window in pixels that are its units times the scale.
    void draw(int scale, wl_output_transform transform, test::size pixels, uint32_t argb = red)
    {
        wl_surface_set_buffer_scale(w->get(), scale);
        wl_surface_set_buffer_transform(w->get(), transform);
        w->draw(pixels, argb);
        settle();
    }
    void draw_with_part(int scale, wl_output_transform transform, test::size pixels)
    {
        draw(scale, transform, pixels);
        w->add_subsurface(60, 50, {30, 20});
        w->commit();
        settle();
    }
    picture_size size() { return offscreen_surface_size(surface()); }
    test::image picture()
    {
        const auto [width, height] = size();
        const swapchain_handle swapchain = offscreen_swapchain(server, width, height);
        const locked_buffer buffer = offscreen_draw_surface(server, *swapchain, surface());
        const texture_handle texture{wlr_texture_from_buffer(server.renderer, buffer.get())};
        const pixel_memory rgba = read_rgba(texture.get());
        test::image image{.width = width, .height = height, .argb = {}};
        for (size_t i = 0; i < size_t(width) * size_t(height); i++)
            image.argb.push_back(0xff000000U | uint32_t{rgba.get()[i * 4]} << 16 |
                                 uint32_t{rgba.get()[i * 4 + 1]} << 8 | rgba.get()[i * 4 + 2]);
        return image;
    }
    test::window *w = nullptr;
};

struct watch : offscreen {
    static void count_picture(void *data) { static_cast<watch *>(data)->pictures++; }
    static void count_end(void *data) { static_cast<watch *>(data)->ends++; }

    void begin() { watched = surface_watch_create(surface(), {count_picture, count_end}, this); }
    int pictures = 0, ends = 0;
    surface_watch_handle watched;
};

} // namespace

TEST_F(offscreen, pictures_show_the_window_with_its_subsurfaces)
{
    draw_with_part(1, WL_OUTPUT_TRANSFORM_NORMAL, {100, 80});
    EXPECT_EQ(size(), (picture_size{100, 80}));
    const test::image shown = picture();
    EXPECT_EQ(shown.at(10, 10), red);
    EXPECT_EQ(shown.at(59, 50), red);
    EXPECT_EQ(shown.at(60, 50), teal);
    EXPECT_EQ(shown.at(89, 69), teal);
    EXPECT_EQ(shown.at(90, 70), red);
}

TEST_F(offscreen, pictures_have_black_behind_what_is_translucent)
{
    draw(1, WL_OUTPUT_TRANSFORM_NORMAL, {100, 80}, 0);
    EXPECT_EQ(picture().at(50, 40), black);
}

TEST_F(offscreen, pictures_have_the_pixels_of_the_buffer)
{
    draw_with_part(2, WL_OUTPUT_TRANSFORM_NORMAL, {200, 160});
    EXPECT_EQ(size(), (picture_size{200, 160}));
    const test::image shown = picture();
    EXPECT_EQ(shown.at(119, 100), red);
    EXPECT_EQ(shown.at(120, 100), teal);
    EXPECT_EQ(shown.at(179, 139), teal);
    EXPECT_EQ(shown.at(180, 139), red);
}

TEST_F(offscreen, pictures_of_turned_buffers_are_the_right_way_up)
{
    draw_with_part(1, WL_OUTPUT_TRANSFORM_90, {80, 100});
    EXPECT_EQ(size(), (picture_size{100, 80}));
    const test::image shown = picture();
    EXPECT_EQ(shown.at(99, 79), red);
    EXPECT_EQ(shown.at(60, 50), teal);
    EXPECT_EQ(shown.at(89, 69), teal);
}

TEST_F(offscreen, pictures_of_turned_buffers_look_as_on_the_screen)
{
    for (const wl_output_transform transform :
         {WL_OUTPUT_TRANSFORM_90, WL_OUTPUT_TRANSFORM_180, WL_OUTPUT_TRANSFORM_270,
          WL_OUTPUT_TRANSFORM_FLIPPED, WL_OUTPUT_TRANSFORM_FLIPPED_90}) {
        const bool lies = (unsigned(transform) & WL_OUTPUT_TRANSFORM_90) != 0;
        wl_surface_set_buffer_transform(w->get(), transform);
        w->owner().paint_noise(w->get(), lies ? test::size{80, 100} : test::size{100, 80});
        settle();
        const test::image shown = picture();
        const wlr_box at = box(*w);
        for (const auto &[x, y] : {std::pair{0, 0}, {99, 0}, {0, 79}, {99, 79}, {31, 17}})
            EXPECT_EQ(shown.at(x, y), pixel("A", at.x + x, at.y + y)) << transform << " " << x << "," << y;
    }
}

TEST_F(offscreen, pictures_of_one_stretched_pixel_have_room_for_its_subsurfaces)
{
    auto *viewporter = static_cast<wp_viewporter *>(w->owner().bind(wp_viewporter_interface, 1));
    wp_viewport *viewport = wp_viewporter_get_viewport(viewporter, w->get());
    wp_viewport_set_destination(viewport, 100, 80);
    draw_with_part(1, WL_OUTPUT_TRANSFORM_NORMAL, {1, 1});
    EXPECT_EQ(size(), (picture_size{100, 80}));
    EXPECT_EQ(picture().at(60, 50), teal);
    EXPECT_EQ(picture().at(10, 10), red);
    wp_viewport_destroy(viewport);
    wp_viewporter_destroy(viewporter);
}

TEST_F(offscreen, pictures_of_a_part_of_a_buffer_have_its_shape)
{
    auto *viewporter = static_cast<wp_viewporter *>(w->owner().bind(wp_viewporter_interface, 1));
    wp_viewport *viewport = wp_viewporter_get_viewport(viewporter, w->get());
    wp_viewport_set_source(viewport, 0, 0, wl_fixed_from_int(50), wl_fixed_from_int(20));
    draw(1, WL_OUTPUT_TRANSFORM_NORMAL, {100, 80});
    EXPECT_EQ(size(), (picture_size{50, 20}));
    wp_viewport_destroy(viewport);
    wp_viewporter_destroy(viewporter);
}

TEST_F(offscreen, pictures_of_windows_that_show_nothing_have_no_size)
{
    wlr_surface &unmapped = surface();
    w->unmap();
    settle();
    EXPECT_EQ(offscreen_surface_size(unmapped), picture_size{});
    EXPECT_EQ(offscreen_swapchain(server, 0, 0), nullptr);
}

TEST_F(watch, tells_of_new_pictures_of_the_window)
{
    begin();
    w->fill(teal);
    settle();
    EXPECT_EQ(pictures, 1);
    w->commit(); // with nothing new
    settle();
    EXPECT_EQ(pictures, 1);
}

TEST_F(watch, tells_of_new_pictures_of_subsurfaces_old_and_new)
{
    w->add_subsurface(0, 0, {10, 10});
    w->commit();
    settle();
    begin();
    w->paint_subsurfaces({10, 10}, red);
    EVENTUALLY_EQ(pictures, 1);
    w->add_subsurface(20, 20, {10, 10});
    w->commit();
    settle();
    pictures = 0;
    w->paint_subsurfaces({12, 12}, red);
    EVENTUALLY_EQ(pictures, 2);
}

TEST_F(watch, outlives_subsurfaces_and_ends_with_the_window)
{
    w->add_subsurface(0, 0, {10, 10});
    w->commit();
    settle();
    begin();
    w->destroy_subsurfaces();
    settle();
    EXPECT_EQ(ends, 0);
    w->destroy();
    EVENTUALLY_EQ(ends, 1);
}

TEST_F(watch, forgets_what_lies_below_a_subsurface_that_goes)
{
    test::client &c = w->owner();
    auto *manager = static_cast<wl_subcompositor *>(c.bind(wl_subcompositor_interface, 1));
    wl_surface *middle = c.create_surface("middle"), *leaf = c.create_surface("leaf");
    wl_subsurface *lower = wl_subcompositor_get_subsurface(manager, leaf, middle);
    wl_subsurface_set_desync(lower);
    begin();
    for (int i = 0; i < 3; i++) { // each time, the window gets both anew
        wl_subsurface *upper = wl_subcompositor_get_subsurface(manager, middle, w->get());
        wl_subsurface_set_desync(upper);
        c.paint(middle, {20, 20}, red);
        w->commit();
        settle();
        pictures = 0;
        c.paint(leaf, {10, 10}, teal);
        settle();
        EXPECT_EQ(pictures, 1);
        wl_subsurface_destroy(upper);
        settle();
    }
    pictures = 0;
    c.paint(leaf, {10, 10}, red);
    settle();
    EXPECT_EQ(pictures, 0);
    wl_subsurface_destroy(lower);
    wl_subcompositor_destroy(manager);
    c.destroy_surface(leaf);
    c.destroy_surface(middle);
}

TEST_F(watch, may_be_ended_by_what_it_tells)
{
    const auto stop = [](void *data) { static_cast<watch *>(data)->watched.reset(); };
    w->add_subsurface(0, 0, {10, 10});
    w->commit();
    settle();
    watched = surface_watch_create(surface(), {stop, stop}, this);
    w->fill(teal);
    EVENTUALLY(watched == nullptr);
    watched = surface_watch_create(surface(), {count_picture, stop}, this);
    w->destroy();
    EVENTUALLY(watched == nullptr);
}
