// The library announces a new object before it sets the object's handlers, so a dispatcher that is set at
// that moment would be overwritten. Waiting for the event loop is too late, because the client's next request
// may already be in the buffer that libwayland is reading. A protocol logger hears of a request right before
// it is handled. It also hears of each event of each client, so it stays only until the event loop is idle,
// when the dispatcher is set without it.

#include "request_guards.hpp"

#include "records.hpp"
#include "server.hpp"

#include <algorithm>
#include <string_view>
#include <vector>

static std::span<const request_guard> g_guards;

// Lives as long as the client.
struct watched_client {
    wl_client *client = nullptr;
    std::vector<uint32_t> waiting; // ids of objects without their dispatcher; some may be gone
    wl_protocol_logger *logger = nullptr; // these two exist while an object waits
    wl_event_source *idle = nullptr;
    listener resource_created, destroy;
};

static const request_guard *guard_of(wl_resource *resource)
{
    const auto found = std::ranges::find(g_guards, std::string_view{wl_resource_get_class(resource)},
                                         &request_guard::interface);
    return found != g_guards.end() ? &*found : nullptr;
}

// The library's table stays the object's implementation, because the library recognises its objects by it. An
// object that has its dispatcher already does not change.
static void put_dispatcher(wl_resource *resource)
{
    if (const request_guard *guard = guard_of(resource))
        wl_resource_set_dispatcher(resource, guard->dispatcher, resource->object.implementation,
                                   wl_resource_get_user_data(resource), resource->destroy);
}

static void handle_request(void *data, wl_protocol_logger_type direction,
                           const wl_protocol_logger_message *message)
{
    const auto *watched = static_cast<watched_client *>(data);
    if (direction == WL_PROTOCOL_LOGGER_REQUEST &&
        wl_resource_get_client(message->resource) == watched->client)
        put_dispatcher(message->resource);
}

static void stop_waiting(watched_client &watched)
{
    if (watched.logger != nullptr)
        wl_protocol_logger_destroy(watched.logger);
    if (watched.idle != nullptr)
        wl_event_source_remove(watched.idle);
    watched.logger = nullptr;
    watched.idle = nullptr;
    watched.waiting.clear();
}

static void handle_idle(void *data)
{
    auto *watched = static_cast<watched_client *>(data);
    watched->idle = nullptr; // the event loop has removed it
    for (const uint32_t id : watched->waiting)
        if (wl_resource *resource = wl_client_get_object(watched->client, id))
            put_dispatcher(resource);
    stop_waiting(*watched);
}

static void note_resource(watched_client &watched, wl_resource *resource)
{
    if (guard_of(resource) == nullptr)
        return;
    watched.waiting.push_back(wl_resource_get_id(resource));
    if (watched.idle != nullptr)
        return;
    wl_display *display = wl_client_get_display(watched.client);
    watched.logger = wl_display_add_protocol_logger(display, handle_request, &watched);
    watched.idle = wl_event_loop_add_idle(wl_display_get_event_loop(display), handle_idle, &watched);
}

static void forget_client(watched_client &watched)
{
    stop_waiting(watched);
    delete &watched;
}

// libwayland adds listeners on clients through functions. It shows no signal that listen<> could take.
static void watch_client(wl_listener *, void *data)
{
    auto *watched = new watched_client{};
    watched->client = static_cast<wl_client *>(data);
    watched->resource_created.notify = [](wl_listener *raw, void *resource) {
        note_resource(*owner_of<&watched_client::resource_created>(raw),
                      static_cast<wl_resource *>(resource));
    };
    watched->destroy.notify = [](wl_listener *raw, void *) {
        forget_client(*owner_of<&watched_client::destroy>(raw));
    };
    wl_client_add_resource_created_listener(watched->client, &watched->resource_created);
    wl_client_add_destroy_listener(watched->client, &watched->destroy);
}

void guard_requests(vantore_server &server, std::span<const request_guard> guards)
{
    g_guards = guards;
    server.new_client.notify = watch_client;
    wl_display_add_client_created_listener(server.display, &server.new_client);
    server.session_listeners.push_back(&server.new_client);
}
