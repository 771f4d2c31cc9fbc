#include "graphics.hpp"

#include "config/settings.hpp"
#include "handles.hpp"
#include "platform.hpp"
#include "server.hpp"

#include <array>
#include <cstdio>
#include <cstdlib>
#include <cstring>

bool cmdline_has(const char *needle)
{
    const handle<FILE, fclose> file{fopen(g_platform.kernel_command_line, "re")};
    if (file == nullptr)
        return false;
    std::array<char, 4096> line{};
    const size_t length = fread(line.data(), 1, line.size() - 1, file.get());
    line[length] = '\0';
    return strstr(line.data(), needle) != nullptr;
}

void safe_graphics_detect()
{
    g_safe_graphics = cmdline_has("vantore.safe=1");
    g_soft_render = g_safe_graphics;
    if (!g_safe_graphics)
        return;
    setenv("WLR_RENDERER_ALLOW_SOFTWARE", "1", 1);
    setenv("LIBGL_ALWAYS_SOFTWARE", "1", 1);
    wlr_log(WLR_INFO, "vantore-comp: SAFE GRAPHICS mode (vantore.safe=1) — software rendering, effects off");
}

// Any value of the variable allows it, even "0" and the empty one.
static void allow_software_by_environment()
{
    if (getenv("VANTORE_ALLOW_SOFTWARE") == nullptr)
        return;
    setenv("WLR_RENDERER_ALLOW_SOFTWARE", "1", 1);
    wlr_log(WLR_INFO, "vantore-comp: VANTORE_ALLOW_SOFTWARE set — permitting software GL (llvmpipe); "
                      "per-pixel effects auto-disabled");
}

bool renderer_create(vantore_server &server)
{
    allow_software_by_environment();
    server.renderer = fx_renderer_create(server.backend);
    if (server.renderer == nullptr) {
        wlr_log(WLR_ERROR,
                "vantore-comp: could not create a GPU renderer — the display device has no render node "
                "(e.g. QEMU -vga std / bochs-drm). Set VANTORE_ALLOW_SOFTWARE=1 to run on software GL "
                "(llvmpipe), or use a render-capable GPU (virtio-gpu+virgl in a VM). Exiting cleanly.");
        return false;
    }
    if (wlr_renderer_get_drm_fd(server.renderer) < 0) {
        g_soft_render = true;
        wlr_log(WLR_ERROR, "vantore-comp: software renderer detected — shadows/blur/animations disabled "
                           "(force_effects = true overrides)");
    }
    return true;
}

void export_reduced_motion()
{
    const bool moves = g_animations && !g_safe_graphics && (!g_soft_render || g_force_effects);
    setenv("VANTORE_REDUCED_MOTION", moves ? "0" : "1", 1);
}
