#include "screencopy_guard.hpp"

#include <wlr-screencopy-unstable-v1-protocol.h>

enum frame_request : uint32_t { FRAME_COPY, FRAME_DESTROY, FRAME_COPY_WITH_DAMAGE };

// Null once the library has ended the frame.
static const wlr_screencopy_frame_v1 *frame_of(wl_resource *resource)
{
    return static_cast<const wlr_screencopy_frame_v1 *>(wl_resource_get_user_data(resource));
}

using copy_handler = void (*)(wl_client *, wl_resource *, wl_resource *);

static void copy(copy_handler library, wl_resource *resource, wl_resource *target)
{
    wl_client *client = wl_resource_get_client(resource);
    wlr_buffer *buffer = wlr_buffer_try_from_resource(target); // locked until the end of this function
    if (buffer == nullptr)
        return library(client, resource, target);
    const size_t locks = buffer->n_locks;
    const wlr_screencopy_frame_v1 *frame = frame_of(resource);
    const bool was_used = frame != nullptr && frame->buffer != nullptr;
    library(client, resource, target);
    frame = frame_of(resource); // the library may have ended it
    const bool taken = !was_used && frame != nullptr && frame->buffer == buffer;
    if (!taken && buffer->n_locks > locks)
        wlr_buffer_unlock(buffer);
    wlr_buffer_unlock(buffer);
}

static_assert(sizeof(struct zwlr_screencopy_frame_v1_interface) == 3 * sizeof(void (*)()),
              "list the new request below");

int dispatch_screencopy_frame_request(const void *implementation, void *target, uint32_t opcode,
                                      const wl_message *, wl_argument *a)
{
    const auto &library = *static_cast<const struct zwlr_screencopy_frame_v1_interface *>(implementation);
    auto *resource = static_cast<wl_resource *>(target);
    switch (frame_request(opcode)) {
    case FRAME_COPY:
        copy(library.copy, resource, reinterpret_cast<wl_resource *>(a[0].o));
        break;
    case FRAME_DESTROY:
        library.destroy(wl_resource_get_client(resource), resource);
        break;
    case FRAME_COPY_WITH_DAMAGE:
        copy(library.copy_with_damage, resource, reinterpret_cast<wl_resource *>(a[0].o));
        break;
    }
    return 0;
}
