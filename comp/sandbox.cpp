#include "sandbox.hpp"

#include "sandbox_contexts.hpp"
#include "server.hpp"

#include <algorithm>
#include <string_view>

// Sandboxed clients see only the globals in this table. For each we asked what a malicious program would
// learn from it or do with it.
static constexpr std::string_view open_to_sandboxes[]{
    // Showing itself
    "wl_compositor",
    "wl_subcompositor",
    "wl_shm",
    "zwp_linux_dmabuf_v1",
    "wp_linux_drm_syncobj_manager_v1",
    "wp_viewporter",
    "wp_fractional_scale_manager_v1",
    "wp_alpha_modifier_v1",
    "wp_single_pixel_buffer_manager_v1",
    "wp_tearing_control_manager_v1",
    "wp_content_type_manager_v1",
    "wp_presentation",
    "wl_output",
    "zxdg_output_manager_v1",
    // Windows. A program can export handles only for its own windows, and import only a handle that it was
    // given.
    "xdg_wm_base",
    "zxdg_decoration_manager_v1",
    "xdg_activation_v1",
    "zxdg_exporter_v1",
    "zxdg_importer_v1",
    "zxdg_exporter_v2",
    "zxdg_importer_v2",
    // Input, only while the program has the focus. Emergency chords always pass an inhibitor.
    "wl_seat",
    "wl_data_device_manager",
    "zwp_primary_selection_device_manager_v1",
    "wp_cursor_shape_manager_v1",
    "zwp_relative_pointer_manager_v1",
    "zwp_pointer_constraints_v1",
    "zwp_keyboard_shortcuts_inhibit_manager_v1",
};

static bool may_see(const wl_client *client, const wl_global *global, void *)
{
    return !is_sandboxed(client) ||
           std::ranges::contains(open_to_sandboxes, std::string_view{wl_global_get_interface(global)->name});
}

void sandbox_filter_globals(vantore_server &server)
{
    wl_display_set_global_filter(server.display, may_see, nullptr);
}
