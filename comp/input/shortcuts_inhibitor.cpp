#include "shortcuts_inhibitor.hpp"

#include "../records.hpp"
#include "../server.hpp"

struct vantore_shortcuts_inhibitor {
    wlr_keyboard_shortcuts_inhibitor_v1 *inhibitor = nullptr;
    vantore_server *server = nullptr;
    listener destroy;
};

static void shortcuts_inhibitor_destroy(vantore_shortcuts_inhibitor &i)
{
    if (i.server->active_shortcuts_inhibitor == i.inhibitor)
        i.server->active_shortcuts_inhibitor = nullptr;
    delete &i;
}

void server_new_shortcuts_inhibitor(vantore_server &server, wlr_keyboard_shortcuts_inhibitor_v1 *inhibitor)
{
    wlr_keyboard_shortcuts_inhibitor_v1_activate(inhibitor);
    server.active_shortcuts_inhibitor = inhibitor;
    auto *i = new vantore_shortcuts_inhibitor{};
    i->inhibitor = inhibitor;
    i->server = &server;
    listen<&vantore_shortcuts_inhibitor::destroy, shortcuts_inhibitor_destroy>(*i, inhibitor->events.destroy);
}
