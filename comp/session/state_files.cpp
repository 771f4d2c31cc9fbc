#include "state_files.hpp"

#include "../handles.hpp"
#include "../outputs/output.hpp"
#include "../server.hpp"

#include <array>
#include <cstdio>
#include <cstdlib>
#include <xf86drm.h>

using file_handle = handle<FILE, fclose>;

// Null when there is no runtime directory or the file can't be opened.
static file_handle open_state_file(const char *name)
{
    const char *directory = getenv("XDG_RUNTIME_DIR");
    if (directory == nullptr)
        return nullptr;
    std::array<char, 512> path{};
    snprintf(path.data(), path.size(), "%s/%s", directory, name);
    return file_handle{fopen(path.data(), "we")};
}

void write_outputs_file(vantore_server &server)
{
    const file_handle file = open_state_file("vantore-outputs");
    if (file == nullptr)
        return;
    for (auto &o : each<&vantore_output::link>(server.outputs))
        if (o.wlr_output->name != nullptr)
            fprintf(file.get(), "%s\n", o.wlr_output->name);
}

void publish_render_node(vantore_server &server)
{
    const int drm_fd = wlr_renderer_get_drm_fd(server.renderer);
    if (drm_fd < 0)
        return;
    const handle<char, free> node{drmGetRenderDeviceNameFromFd(drm_fd)};
    if (node == nullptr)
        return;
    setenv("VNT_RENDER_NODE", node.get(), 1);
    if (const file_handle file = open_state_file("vantore-render-node"))
        fprintf(file.get(), "%s\n", node.get());
    wlr_log(WLR_INFO, "vantore-comp: rendering on %s", node.get());
}
