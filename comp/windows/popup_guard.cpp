#include "popup_guard.hpp"

#include <xdg-shell-protocol.h>

enum popup_request : uint32_t { POPUP_DESTROY, POPUP_GRAB, POPUP_REPOSITION };

static wl_resource *resource_argument(const wl_argument &argument)
{
    return reinterpret_cast<wl_resource *>(argument.o);
}

static_assert(sizeof(struct xdg_popup_interface) == 3 * sizeof(void (*)()), "list the new request below");

int dispatch_popup_request(const void *library, void *target, uint32_t opcode, const wl_message *,
                           wl_argument *arguments)
{
    const auto &handlers = *static_cast<const struct xdg_popup_interface *>(library);
    auto *resource = static_cast<wl_resource *>(target);
    wl_client *client = wl_resource_get_client(resource);
    const wlr_xdg_popup *popup = wlr_xdg_popup_from_resource(resource);
    switch (popup_request(opcode)) {
    case POPUP_DESTROY:
        handlers.destroy(client, resource);
        break;
    case POPUP_GRAB:
        if (popup != nullptr && popup->seat != nullptr)
            wl_resource_post_error(resource, XDG_POPUP_ERROR_INVALID_GRAB,
                                   "a popup can be grabbed only once");
        else
            handlers.grab(client, resource, resource_argument(arguments[0]), arguments[1].u);
        break;
    case POPUP_REPOSITION:
        if (popup == nullptr || popup->base->initialized)
            handlers.reposition(client, resource, resource_argument(arguments[0]), arguments[1].u);
        break;
    }
    return 0;
}
