// Pushes a window's pictures to a program whenever the window has drawn. There is at most one subscription at
// a time: a new one ends the former without a word.
#pragma once

#include "../fwd.hpp"

#include <cstdint>
#include <string_view>

// Runs a VNT_MSG_CAPTURE_SUBSCRIBE request. The first picture follows the reply at once.
void ipc_capture_subscribe(vnt_ipc_client &client, uint32_t type, std::string_view payload);

// Returns the window of the subscription, or 0 if there is none.
uint32_t cap_sub_wid(const vantore_server &server);
// Ends the subscription, if there is one. `notify_gone` tells its owner that the window has gone.
void cap_sub_clear(vantore_server &server, bool notify_gone);
// Ends the subscription if it is the client's.
void cap_sub_forget(const vnt_ipc_client &client);
