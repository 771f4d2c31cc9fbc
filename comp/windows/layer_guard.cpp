#include "layer_guard.hpp"

enum layer_request : uint32_t {
    LAYER_SET_SIZE,
    LAYER_SET_ANCHOR,
    LAYER_SET_EXCLUSIVE_ZONE,
    LAYER_SET_MARGIN,
    LAYER_SET_KEYBOARD_INTERACTIVITY,
    LAYER_GET_POPUP,
    LAYER_ACK_CONFIGURE,
    LAYER_DESTROY,
    LAYER_SET_LAYER,
    LAYER_SET_EXCLUSIVE_EDGE,
};

static_assert(sizeof(struct zwlr_layer_surface_v1_interface) == 10 * sizeof(void (*)()),
              "list the new request below");

int dispatch_layer_surface_request(const void *library, void *target, uint32_t opcode, const wl_message *,
                                   wl_argument *a)
{
    const auto &handlers = *static_cast<const struct zwlr_layer_surface_v1_interface *>(library);
    auto *resource = static_cast<wl_resource *>(target);
    wl_client *client = wl_resource_get_client(resource);
    switch (layer_request(opcode)) {
    case LAYER_SET_SIZE:
        handlers.set_size(client, resource, a[0].u, a[1].u);
        break;
    case LAYER_SET_ANCHOR:
        handlers.set_anchor(client, resource, a[0].u);
        break;
    case LAYER_SET_EXCLUSIVE_ZONE:
        handlers.set_exclusive_zone(client, resource, a[0].i);
        break;
    case LAYER_SET_MARGIN:
        handlers.set_margin(client, resource, a[0].i, a[1].i, a[2].i, a[3].i);
        break;
    case LAYER_SET_KEYBOARD_INTERACTIVITY:
        handlers.set_keyboard_interactivity(client, resource, a[0].u);
        break;
    case LAYER_GET_POPUP:
        if (auto *popup = reinterpret_cast<wl_resource *>(a[0].o);
            wlr_xdg_popup_from_resource(popup) != nullptr)
            handlers.get_popup(client, resource, popup);
        break;
    case LAYER_ACK_CONFIGURE:
        handlers.ack_configure(client, resource, a[0].u);
        break;
    case LAYER_DESTROY:
        handlers.destroy(client, resource);
        break;
    case LAYER_SET_LAYER:
        handlers.set_layer(client, resource, a[0].u);
        break;
    case LAYER_SET_EXCLUSIVE_EDGE:
        handlers.set_exclusive_edge(client, resource, a[0].u);
        break;
    }
    return 0;
}
