#include "diagnostics.hpp"

#include "../platform.hpp"
#include "../server.hpp"
#include "../strbuf.hpp"
#include "../windows/layer.hpp"
#include "../windows/toplevel.hpp"

#include <cstdlib>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <xf86drm.h>

static const char *or_unknown(const char *text)
{
    return text != nullptr ? text : "?";
}

static void append_layer(strbuf &sb, const vantore_layer_surface &l)
{
    const wlr_layer_surface_v1 &surface = *l.layer_surface;
    const wlr_scene_node &node = l.scene->tree->node;
    const wlr_surface_state &shown = surface.surface->current;
    sb_appendf(sb, R"({"ns":"%s","output":"%s","layer":%d,"x":%d,"y":%d,"w":%d,"h":%d,"mapped":%s})",
               or_unknown(surface.namespace_),
               or_unknown(surface.output != nullptr ? surface.output->name : nullptr),
               int(surface.current.layer), node.x, node.y, shown.width, shown.height,
               surface.surface->mapped ? "true" : "false");
}

// Anybody may write to the directory, so the path may be a link or a pipe. Returns -1 unless it is a regular
// file.
static int open_regular(const char *path)
{
    const int fd = open(path, O_WRONLY | O_CREAT | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK, 0644);
    struct stat info{};
    if (fd >= 0 && fstat(fd, &info) == 0 && S_ISREG(info.st_mode) && ftruncate(fd, 0) == 0)
        return fd;
    if (fd >= 0)
        close(fd);
    return -1;
}

static void write_file(const char *path, std::string_view text)
{
    const int fd = open_regular(path);
    if (fd < 0)
        return;
    while (!text.empty()) {
        const ssize_t written = write(fd, text.data(), text.size());
        if (written <= 0)
            break;
        text.remove_prefix(size_t(written));
    }
    close(fd);
}

void ipc_dump_layers(vantore_server &server, ipc_words &)
{
    strbuf sb;
    const char *separator = "";
    sb_appendf(sb, "[");
    for (const auto &l : each<&vantore_layer_surface::link>(server.layer_surfaces)) {
        sb_appendf(sb, "%s", separator);
        append_layer(sb, l);
        separator = ",";
    }
    sb_appendf(sb, "]\n");
    write_file(g_platform.layer_dump, sb.text());
}

void log_capture_way(uint32_t id, const char *app_id, wlr_buffer *buffer)
{
    wlr_dmabuf_attributes dmabuf{};
    if (buffer == nullptr) {
        wlr_log(WLR_INFO, "capture-probe id=%u: no committed buffer (window absent or nothing drawn yet)",
                id);
        return;
    }
    if (!wlr_buffer_get_dmabuf(buffer, &dmabuf)) {
        wlr_log(WLR_INFO,
                "capture-probe id=%u app='%s': NOT a dmabuf (shm/other) — needs the "
                "composite-render path",
                id, or_unknown(app_id));
        return;
    }
    const handle<char, free> format{drmGetFormatName(dmabuf.format)};
    wlr_log(WLR_INFO,
            "capture-probe id=%u app='%s': DMABUF ok — %dx%d format=%s(0x%08x) modifier=0x%016llx planes=%d "
            "stride0=%u  → FAST PATH viable",
            id, or_unknown(app_id), dmabuf.width, dmabuf.height, or_unknown(format.get()), dmabuf.format,
            static_cast<unsigned long long>(dmabuf.modifier), dmabuf.n_planes, dmabuf.stride[0]);
}

void ipc_capture_probe(vantore_server &server, ipc_words &words)
{
    const uint32_t id = ipc_parse_window_id(words.next());
    const vantore_toplevel *t = toplevel_by_id(server, id);
    const wlr_surface *surface = t != nullptr ? tl_surface(*t) : nullptr;
    wlr_client_buffer *buffer = surface != nullptr ? surface->buffer : nullptr;
    log_capture_way(id, t != nullptr ? tl_app_id(*t) : nullptr, buffer != nullptr ? &buffer->base : nullptr);
}
