#include "graphics.hpp"

#include "config/settings.hpp"
#include "handles.hpp"
#include "offscreen.hpp"
#include "platform.hpp"
#include "server.hpp"

#include <GLES2/gl2.h>
#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

static constexpr std::string_view software_renderers[]{"llvmpipe", "softpipe", "swrast", "swiftshader"};

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

static void note_software_renderer()
{
    g_soft_render = true;
    wlr_log(WLR_ERROR, "vantore-comp: software renderer detected — shadows/blur/animations disabled "
                       "(force_effects = true overrides)");
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
    if (wlr_renderer_get_drm_fd(server.renderer) < 0)
        note_software_renderer();
    return true;
}

bool is_software_renderer(std::string_view name)
{
    std::string lower{name};
    std::ranges::transform(lower, lower.begin(),
                           [](char c) { return c >= 'A' && c <= 'Z' ? char(c + 32) : c; });
    return std::ranges::any_of(software_renderers,
                               [&](std::string_view software) { return lower.contains(software); });
}

// The driver answers only while the renderer draws.
static std::string renderer_name(const vantore_server &server)
{
    const swapchain_handle swapchain = offscreen_swapchain(server, 1, 1);
    const locked_buffer buffer{swapchain != nullptr ? wlr_swapchain_acquire(swapchain.get()) : nullptr};
    wlr_render_pass *pass =
        buffer != nullptr ? wlr_renderer_begin_buffer_pass(server.renderer, buffer.get(), nullptr) : nullptr;
    if (pass == nullptr)
        return {};
    const GLubyte *name = glGetString(GL_RENDERER);
    std::string copy{name != nullptr ? reinterpret_cast<const char *>(name) : ""};
    wlr_render_pass_submit(pass);
    return copy;
}

void notice_software_renderer(const vantore_server &server)
{
    if (!g_soft_render && is_software_renderer(renderer_name(server)))
        note_software_renderer();
}

void export_reduced_motion()
{
    const bool moves = g_animations && !g_safe_graphics && (!g_soft_render || g_force_effects);
    setenv("VANTORE_REDUCED_MOTION", moves ? "0" : "1", 1);
}
