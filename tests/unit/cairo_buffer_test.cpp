#include "cairo_buffer.hpp"

#include <drm_fourcc.h>
#include <gtest/gtest.h>

namespace
{

struct buffer_access {
    void *data = nullptr;
    uint32_t format = 0;
    size_t stride = 0;
};

TEST(cairo_buffer, shows_its_pixels_to_the_renderer)
{
    cairo_t *cr = nullptr;
    cairo_buffer *b = cairo_buffer_create(3, 2, &cr);
    cairo_set_source_rgb(cr, 1, 0, 0);
    cairo_paint(cr);
    cairo_destroy(cr);
    cairo_surface_flush(b->surface);
    buffer_access access;
    ASSERT_TRUE(wlr_buffer_begin_data_ptr_access(&b->base, WLR_BUFFER_DATA_PTR_ACCESS_READ, &access.data,
                                                 &access.format, &access.stride));
    EXPECT_EQ(access.format, uint32_t{DRM_FORMAT_ARGB8888});
    EXPECT_GE(access.stride, 12U);
    EXPECT_EQ(*static_cast<uint32_t *>(access.data), 0xffff0000U);
    wlr_buffer_end_data_ptr_access(&b->base);
    EXPECT_EQ(b->base.width, 3);
    EXPECT_EQ(b->base.height, 2);
    wlr_buffer_drop(&b->base);
}

TEST(cairo_buffer, refuses_to_be_written_by_the_renderer)
{
    cairo_t *cr = nullptr;
    cairo_buffer *b = cairo_buffer_create(1, 1, &cr);
    cairo_destroy(cr);
    buffer_access access;
    EXPECT_FALSE(wlr_buffer_begin_data_ptr_access(
        &b->base, WLR_BUFFER_DATA_PTR_ACCESS_READ | WLR_BUFFER_DATA_PTR_ACCESS_WRITE, &access.data,
        &access.format, &access.stride));
    wlr_buffer_drop(&b->base);
}

TEST(cairo_buffer, is_at_least_one_pixel_large)
{
    cairo_t *cr = nullptr;
    cairo_buffer *b = cairo_buffer_create(0, -5, &cr);
    cairo_destroy(cr);
    EXPECT_EQ(b->base.width, 1);
    EXPECT_EQ(b->base.height, 1);
    wlr_buffer_drop(&b->base);
}

TEST(cairo_buffer, takes_a_finished_surface_over_with_its_size)
{
    cairo_surface_t *surface = cairo_image_surface_create(CAIRO_FORMAT_ARGB32, 7, 5);
    cairo_surface_reference(surface); // the test's own reference, which outlives the buffer's
    cairo_buffer *b = cairo_buffer_from_surface(surface);
    EXPECT_EQ(b->base.width, 7);
    EXPECT_EQ(b->base.height, 5);
    wlr_buffer_drop(&b->base);
    EXPECT_EQ(cairo_surface_get_reference_count(surface), 1U);
    cairo_surface_destroy(surface);
}

} // namespace
