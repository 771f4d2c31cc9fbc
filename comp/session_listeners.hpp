// Listeners of the server record that live as long as the session. They are detached together when it ends,
// before the objects that they listen to die. The library asserts that no listener is left then.
#pragma once

#include "server.hpp"

template <auto Member, auto Handler> void listen_until_end(vantore_server &server, wl_signal &signal)
{
    listen<Member, Handler>(server, signal);
    server.session_listeners.push_back(&(server.*Member));
}

inline void detach_session_listeners(vantore_server &server)
{
    for (listener *l : server.session_listeners)
        unlisten(*l);
    server.session_listeners.clear();
}
