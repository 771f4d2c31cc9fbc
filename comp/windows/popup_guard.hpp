// Keeps menus that a client grabs twice or moves too early from ending the session.
#pragma once

#include "../request_guards.hpp"

// The dispatcher for xdg_popup. The library asserts that a popup has had its first commit when a client
// repositions it, and it loses track of a popup that a client grabs twice. Here a reposition request before
// the first commit is ignored, and a second grab ends the client with the protocol's error. All other
// requests reach the library.
request_dispatcher dispatch_popup_request;
