#include "state_files.hpp"

#include "../handles.hpp"

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <unistd.h>
#include <xf86drm.h>

static constexpr const char *fullscreen_file = "vantore-fs";

using file_handle = handle<FILE, fclose>;

using state_path = std::array<char, 512>;

// Returns an empty path if there is no runtime directory.
static state_path path_of(const char *name)
{
    state_path path{};
    if (const char *directory = getenv("XDG_RUNTIME_DIR"))
        snprintf(path.data(), path.size(), "%s/%s", directory, name);
    return path;
}

// Returns null if there is no runtime directory or the file can't be opened.
static file_handle open_state_file(const char *name)
{
    return file_handle{fopen(path_of(name).data(), "we")};
}

void write_outputs_file(std::span<const char *const> names)
{
    const file_handle file = open_state_file("vantore-outputs");
    if (file == nullptr)
        return;
    for (const char *name : names)
        if (name != nullptr)
            fprintf(file.get(), "%s\n", name);
}

// Replaces line ends, because clients choose their app ids and a line end would shift the lines of the file.
// Null gives an empty text.
static std::string one_line(const char *text)
{
    std::string line = text != nullptr ? text : "";
    std::ranges::replace(line, '\n', ' ');
    return line;
}

void write_fullscreen_file(const char *output, const char *app_id, uint32_t id)
{
    const file_handle file = open_state_file(fullscreen_file);
    if (file == nullptr)
        return;
    fprintf(file.get(), "%s\n%s\n%u\n", output != nullptr ? output : "", one_line(app_id).c_str(), id);
}

void remove_fullscreen_file()
{
    unlink(path_of(fullscreen_file).data());
}

void publish_render_node(int drm_fd)
{
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
