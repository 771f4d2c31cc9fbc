// The library's own implementation waits for connections with a plain accept. A sandbox could hold up the
// session with it, or keep it busy for ever, and it does not rest while no descriptor is free.

#include "sandbox_contexts.hpp"

#include "listening.hpp"
#include "records.hpp"
#include "server.hpp"

#include <fcntl.h>
#include <security-context-v1-protocol.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

// Lives until the sandbox ends. A context that was never committed ends with its object.
struct sandbox_context {
    list_link link; // server.sandboxes
    wl_display *display = nullptr;
    wl_resource *resource = nullptr; // null once its client has let go of it
    bool has_engine = false, has_app_id = false, has_instance_id = false, committed = false;
    int socket = -1; // owned until the commit hands it to `listening`
    listening_socket listening;
    int life = -1; // owned; hangs up when the sandbox ends
    event_source life_source;
};

static void end_context(sandbox_context &context)
{
    listening_stop(context.listening);
    context.life_source.reset();
    for (const int fd : {context.socket, context.life})
        if (fd >= 0)
            close(fd);
    if (context.resource != nullptr)
        wl_resource_set_user_data(context.resource, nullptr);
    delete &context;
}

// Clients

// Being on this list of a client is the mark of a sandboxed one.
static void forget_client(wl_listener *mark, void *)
{
    wl_list_remove(&mark->link);
    delete mark;
}

bool is_sandboxed(const wl_client *client)
{
    return wl_client_get_destroy_listener(const_cast<wl_client *>(client), forget_client) != nullptr;
}

static void take_client(void *data, int connection)
{
    wl_client *client = wl_client_create(static_cast<wl_display *>(data), connection);
    if (client == nullptr) {
        close(connection);
        return;
    }
    auto *mark = new wl_listener{};
    mark->notify = forget_client;
    wl_client_add_destroy_listener(client, mark);
}

// Requests to a context

static sandbox_context *context_of(wl_resource *resource)
{
    return static_cast<sandbox_context *>(wl_resource_get_user_data(resource));
}

static void destroy_object(wl_client *, wl_resource *resource)
{
    wl_resource_destroy(resource);
}

// The names are for the sandbox's users; nothing here depends on them.
template <bool sandbox_context::*Given> static void set_name(wl_client *, wl_resource *resource, const char *)
{
    sandbox_context *context = context_of(resource);
    if (context == nullptr || context->committed)
        wl_resource_post_error(resource, WP_SECURITY_CONTEXT_V1_ERROR_ALREADY_USED,
                               "the sandbox has been registered already");
    else if (std::exchange(context->*Given, true))
        wl_resource_post_error(resource, WP_SECURITY_CONTEXT_V1_ERROR_ALREADY_SET,
                               "the name has been set already");
}

// The descriptor hung up, or can't do so any more.
static int handle_end_of_life(int, uint32_t, void *data)
{
    end_context(*static_cast<sandbox_context *>(data));
    return 0;
}

static bool start_listening(sandbox_context &context)
{
    wl_event_loop *loop = wl_display_get_event_loop(context.display);
    context.life_source.reset(wl_event_loop_add_fd(loop, context.life, 0, handle_end_of_life, &context));
    if (context.life_source == nullptr ||
        !listening_start(context.listening, context.display, context.socket, take_client, context.display))
        return false;
    context.socket = -1;
    return true;
}

static void commit(wl_client *client, wl_resource *resource)
{
    sandbox_context *context = context_of(resource);
    if (context == nullptr || context->committed) {
        wl_resource_post_error(resource, WP_SECURITY_CONTEXT_V1_ERROR_ALREADY_USED,
                               "the sandbox has been registered already");
        return;
    }
    context->committed = true;
    if (!start_listening(*context)) {
        wl_client_post_no_memory(client);
        end_context(*context);
    }
}

static constexpr struct wp_security_context_v1_interface context_requests{
    .destroy = destroy_object,
    .set_sandbox_engine = set_name<&sandbox_context::has_engine>,
    .set_app_id = set_name<&sandbox_context::has_app_id>,
    .set_instance_id = set_name<&sandbox_context::has_instance_id>,
    .commit = commit,
};

// The sandbox itself outlives the client that registered it.
static void handle_context_destroy(wl_resource *resource)
{
    sandbox_context *context = context_of(resource);
    if (context == nullptr)
        return;
    context->resource = nullptr;
    if (!context->committed)
        end_context(*context);
}

// Requests to the global

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

// Somebody else may accept the connection that the event loop has announced.
static bool never_blocks(int fd)
{
    const int flags = fcntl(fd, F_GETFL);
    return flags >= 0 && fcntl(fd, F_SETFL, flags | O_NONBLOCK) == 0;
}

static void create_listener(wl_client *client, wl_resource *manager, uint32_t id, int socket, int life)
{
    auto *context = new sandbox_context{};
    context->display = wl_client_get_display(client);
    context->socket = socket;
    context->life = life;
    if (!is_listening_socket(socket) || !never_blocks(socket) || !can_hang_up(life)) {
        wl_resource_post_error(manager, WP_SECURITY_CONTEXT_MANAGER_V1_ERROR_INVALID_LISTEN_FD,
                               "a sandbox needs a listening socket and a descriptor that tells of its end");
        return end_context(*context);
    }
    context->resource =
        wl_resource_create(client, &wp_security_context_v1_interface, wl_resource_get_version(manager), id);
    if (context->resource == nullptr) {
        wl_client_post_no_memory(client);
        return end_context(*context);
    }
    wl_resource_set_implementation(context->resource, &context_requests, context, handle_context_destroy);
    auto &server = *static_cast<vantore_server *>(wl_resource_get_user_data(manager));
    wl_list_insert(&server.sandboxes, &context->link);
}

static constexpr struct wp_security_context_manager_v1_interface manager_requests{
    .destroy = destroy_object,
    .create_listener = create_listener,
};

static void bind(wl_client *client, void *data, uint32_t version, uint32_t id)
{
    wl_resource *manager =
        wl_resource_create(client, &wp_security_context_manager_v1_interface, int(version), id);
    if (manager == nullptr)
        return wl_client_post_no_memory(client);
    wl_resource_set_implementation(manager, &manager_requests, data, nullptr);
}

bool sandbox_contexts_begin(vantore_server &server)
{
    static constexpr int version = 1;
    return wl_global_create(server.display, &wp_security_context_manager_v1_interface, version, &server,
                            bind) != nullptr;
}

void sandbox_contexts_end(vantore_server &server)
{
    for (auto &context : each<&sandbox_context::link>(server.sandboxes))
        end_context(context);
}
