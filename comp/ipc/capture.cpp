#include "capture.hpp"

#include "../outputs/lookup.hpp"
#include "../outputs/output.hpp"
#include "../server.hpp"
#include "../text.hpp"
#include "../windows/toplevel.hpp"
#include "memory_file.hpp"
#include "render_output.hpp"
#include "request_text.hpp"

#include <algorithm>
#include <cstring>

static constexpr int thumbnail_size = 320;
static constexpr int largest_region = 32768;
static constexpr uint32_t opaque_black = 0xff000000;

int vnt_capture_window_memfd(vantore_server &server, uint32_t wid, int max_dim, strbuf &meta)
{
    const vantore_toplevel *t = toplevel_by_id(server, wid);
    wlr_texture *texture = t != nullptr ? wlr_surface_get_texture(tl_surface(*t)) : nullptr;
    if (texture == nullptr || texture->width == 0 || texture->height == 0)
        return -1;
    const pixel_memory pixels = read_rgba(texture);
    if (pixels == nullptr)
        return -1;
    return vnt_rgba_to_memfd(pixels.get(), int(texture->width), int(texture->height),
                             size_t(texture->width) * 4, max_dim, meta);
}

static vantore_output *output_to_capture(vantore_server &server, std::string_view name)
{
    return name.empty() || name == "@focused" ? current_output(server) : output_by_name(server, name);
}

int vnt_capture_output_memfd(vantore_server &server, std::string_view name, int max_dim, strbuf &meta)
{
    vantore_output *o = output_to_capture(server, name);
    if (o == nullptr)
        return -1;
    const rendered picture = vnt_render_output_rgba(server, *o);
    if (picture.pixels == nullptr)
        return -1;
    return vnt_rgba_to_memfd(picture.pixels.get(), picture.width, picture.height, size_t(picture.width) * 4,
                             max_dim, meta);
}

// Copies the `shared` part of the picture into the canvas, which shows the region. The picture's top left
// corner lies at `origin`. All boxes are in layout coordinates.
static void copy_shared(uint32_t *canvas, const wlr_box &region, const rendered &picture,
                        const wlr_box &origin, const wlr_box &shared)
{
    const int columns = std::min(shared.width, picture.width - (shared.x - origin.x));
    if (columns < 1)
        return;
    for (int y = shared.y; y < shared.y + shared.height && y - origin.y < picture.height; y++) {
        const size_t from = size_t(y - origin.y) * size_t(picture.width) + size_t(shared.x - origin.x);
        const size_t to = size_t(y - region.y) * size_t(region.width) + size_t(shared.x - region.x);
        memcpy(canvas + to, picture.pixels.get() + from * sizeof *canvas, size_t(columns) * sizeof *canvas);
    }
}

// Returns the part of the region that the output shows, or a box of width 0 if there is none. A client may
// ask for a region whose right or bottom edge does not fit an int.
static wlr_box shared_box(const wlr_box &region, const wlr_box &output)
{
    const int left = std::max(region.x, output.x), top = std::max(region.y, output.y);
    const auto right = int(std::min(int64_t{region.x} + region.width, int64_t{output.x} + output.width));
    const auto bottom = int(std::min(int64_t{region.y} + region.height, int64_t{output.y} + output.height));
    if (right <= left || bottom <= top)
        return {};
    return {.x = left, .y = top, .width = right - left, .height = bottom - top};
}

// Returns false if no output added anything.
static bool paint_region(vantore_server &server, uint32_t *canvas, const wlr_box &region)
{
    bool painted = false;
    for (auto &o : each<&vantore_output::link>(server.outputs)) {
        const wlr_box box = output_layout_box(o);
        const wlr_box shared = shared_box(region, box);
        if (shared.width < 1)
            continue;
        const rendered picture = vnt_render_output_rgba(server, o);
        if (picture.pixels == nullptr)
            continue;
        copy_shared(canvas, region, picture, box, shared);
        painted = true;
    }
    return painted;
}

static bool any_output_shares(vantore_server &server, const wlr_box &region)
{
    for (auto &o : each<&vantore_output::link>(server.outputs))
        if (shared_box(region, output_layout_box(o)).width > 0)
            return true;
    return false;
}

int vnt_capture_layout_region(vantore_server &server, const wlr_box &region, int max_dim, strbuf &meta)
{
    if (region.width < 1 || region.height < 1 || region.width > largest_region ||
        region.height > largest_region)
        return -1;
    // This check comes before the allocation, because a region may need four gigabytes.
    if (!any_output_shares(server, region))
        return -1;
    const size_t pixels = size_t(region.width) * size_t(region.height);
    const handle<uint32_t, free> canvas{static_cast<uint32_t *>(malloc(pixels * sizeof(uint32_t)))};
    if (canvas == nullptr)
        return -1;
    std::fill_n(canvas.get(), pixels, opaque_black);
    if (!paint_region(server, canvas.get(), region))
        return -1;
    return vnt_rgba_to_memfd(canvas.get(), region.width, region.height, size_t(region.width) * 4, max_dim,
                             meta);
}

int ipc_capture(vantore_server &server, std::string_view request, strbuf &meta)
{
    const capture_spec spec = ipc_parse_capture(request);
    wlr_box layout{};
    switch (spec.kind) {
    case capture_kind::window:
        return vnt_capture_window_memfd(server, spec.window_id, spec.max_dim, meta);
    case capture_kind::output:
        return vnt_capture_output_memfd(server, text_of(spec.output_name), spec.max_dim, meta);
    case capture_kind::region:
        return vnt_capture_layout_region(server, spec.region, spec.max_dim, meta);
    case capture_kind::everything:
        wlr_output_layout_get_box(server.output_layout, nullptr, &layout);
        return vnt_capture_layout_region(server, layout, spec.max_dim, meta);
    }
    return -1;
}

int ipc_thumbnail(vantore_server &server, std::string_view request, strbuf &meta)
{
    return vnt_capture_window_memfd(server, ipc_parse_thumbnail(request), thumbnail_size, meta);
}
