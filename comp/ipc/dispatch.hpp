// Runs the requests of clients by their type.
#pragma once

#include "../fwd.hpp"

#include <cstdint>
#include <string_view>

// Runs one request and sends its one reply. It may condemn the client but never frees it.
void ipc_dispatch(vnt_ipc_client &client, uint32_t type, std::string_view payload);
