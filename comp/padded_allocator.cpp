#include "padded_allocator.hpp"

#include "records.hpp"

static constexpr int block = 4; // pixels, in both directions

struct padded_allocator {
    wlr_allocator base{};
    wlr_allocator *inner = nullptr;
};

// A part of a larger buffer, from its top left corner on.
struct padded_buffer {
    wlr_buffer base{};
    wlr_buffer *whole = nullptr; // owned
};

static wlr_buffer *whole_of(wlr_buffer *base)
{
    return owner_of<&padded_buffer::base>(base)->whole;
}

static void buffer_destroy(wlr_buffer *base)
{
    padded_buffer *b = owner_of<&padded_buffer::base>(base);
    wlr_buffer_finish(base);
    wlr_buffer_drop(b->whole);
    delete b;
}

static bool buffer_dmabuf(wlr_buffer *base, wlr_dmabuf_attributes *attributes)
{
    if (!wlr_buffer_get_dmabuf(whole_of(base), attributes))
        return false;
    attributes->width = base->width;
    attributes->height = base->height;
    return true;
}

static bool buffer_shm(wlr_buffer *base, wlr_shm_attributes *attributes)
{
    if (!wlr_buffer_get_shm(whole_of(base), attributes))
        return false;
    attributes->width = base->width;
    attributes->height = base->height;
    return true;
}

static bool buffer_begin_access(wlr_buffer *base, uint32_t flags, void **data, uint32_t *format,
                                size_t *stride)
{
    return wlr_buffer_begin_data_ptr_access(whole_of(base), flags, data, format, stride);
}

static void buffer_end_access(wlr_buffer *base)
{
    wlr_buffer_end_data_ptr_access(whole_of(base));
}

static constexpr wlr_buffer_impl buffer_impl{
    .destroy = buffer_destroy,
    .get_dmabuf = buffer_dmabuf,
    .get_shm = buffer_shm,
    .begin_data_ptr_access = buffer_begin_access,
    .end_data_ptr_access = buffer_end_access,
};

static int in_whole_blocks(int pixels)
{
    return (pixels + block - 1) / block * block;
}

static wlr_buffer *allocator_create_buffer(wlr_allocator *base, int width, int height,
                                           const wlr_drm_format *format)
{
    wlr_allocator *inner = owner_of<&padded_allocator::base>(base)->inner;
    wlr_buffer *whole =
        wlr_allocator_create_buffer(inner, in_whole_blocks(width), in_whole_blocks(height), format);
    if (whole == nullptr || (whole->width == width && whole->height == height))
        return whole;
    auto *b = new padded_buffer{};
    wlr_buffer_init(&b->base, &buffer_impl, width, height);
    b->whole = whole;
    return &b->base;
}

static void allocator_destroy(wlr_allocator *base)
{
    padded_allocator *a = owner_of<&padded_allocator::base>(base);
    wlr_allocator_destroy(a->inner);
    delete a;
}

static constexpr wlr_allocator_interface allocator_impl{
    .create_buffer = allocator_create_buffer,
    .destroy = allocator_destroy,
};

wlr_allocator *padded_allocator_create(wlr_allocator *inner)
{
    auto *a = new padded_allocator{};
    wlr_allocator_init(&a->base, &allocator_impl, inner->buffer_caps);
    a->inner = inner;
    return &a->base;
}
