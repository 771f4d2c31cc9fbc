#include "sandbox.hpp"

#include "server.hpp"

#include <algorithm>
#include <fcntl.h>
#include <security-context-v1-protocol.h>
#include <string_view>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

enum manager_request : uint32_t { MANAGER_DESTROY, MANAGER_CREATE_LISTENER };

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

static bool may_see(const wl_client *client, const wl_global *global, void *data)
{
    const auto &server = *static_cast<vantore_server *>(data);
    if (wlr_security_context_manager_v1_lookup_client(server.security_contexts, client) == nullptr)
        return true;
    return std::ranges::contains(open_to_sandboxes, std::string_view{wl_global_get_interface(global)->name});
}

void sandbox_filter_globals(vantore_server &server)
{
    wl_display_set_global_filter(server.display, may_see, &server);
}

static bool is_listening_socket(int fd)
{
    int listening = 0;
    socklen_t length = sizeof listening;
    return getsockopt(fd, SOL_SOCKET, SO_ACCEPTCONN, &listening, &length) == 0 && listening != 0;
}

// A pipe or a socket hangs up with its other end. Nothing else would ever end the sandbox.
static bool can_hang_up(int fd)
{
    struct stat about{};
    return fstat(fd, &about) == 0 && (S_ISFIFO(about.st_mode) || S_ISSOCK(about.st_mode));
}

// The library accepts connections without asking whether one still waits, and must not wait for one itself.
static bool never_blocks(int fd)
{
    const int flags = fcntl(fd, F_GETFL);
    return flags >= 0 && fcntl(fd, F_SETFL, flags | O_NONBLOCK) == 0;
}

static void create_listener(const struct wp_security_context_manager_v1_interface &library,
                            wl_resource *resource, const wl_argument *a)
{
    const int listening = a[1].h, life = a[2].h;
    if (is_listening_socket(listening) && never_blocks(listening) && can_hang_up(life))
        return library.create_listener(wl_resource_get_client(resource), resource, a[0].n, listening, life);
    close(listening);
    close(life);
    wl_resource_post_error(resource, WP_SECURITY_CONTEXT_MANAGER_V1_ERROR_INVALID_LISTEN_FD,
                           "a sandbox needs a listening socket and a descriptor that tells of its end");
}

static_assert(sizeof(struct wp_security_context_manager_v1_interface) == 2 * sizeof(void (*)()),
              "list the new request below");

int dispatch_security_context_request(const void *implementation, void *target, uint32_t opcode,
                                      const wl_message *, wl_argument *a)
{
    const auto &library =
        *static_cast<const struct wp_security_context_manager_v1_interface *>(implementation);
    auto *resource = static_cast<wl_resource *>(target);
    switch (manager_request(opcode)) {
    case MANAGER_DESTROY:
        library.destroy(wl_resource_get_client(resource), resource);
        break;
    case MANAGER_CREATE_LISTENER:
        create_listener(library, resource, a);
        break;
    }
    return 0;
}
