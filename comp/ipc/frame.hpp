// Reads and makes frames of the IPC socket, without a socket or a compositor.
#pragma once

#include "protocol.hpp"

#include <array>
#include <string_view>

using ipc_header = std::array<char, ipc_header_size>;

// Returns the header of a frame with this many bytes of payload.
ipc_header ipc_make_header(uint32_t type, uint32_t payload_length);

struct ipc_frame {
    uint32_t type = 0;
    std::string_view payload; // points into the bytes that were passed in
};

enum class ipc_frame_state : unsigned char {
    incomplete, // more bytes must come
    complete,
    broken, // no frame begins here, or it is larger than a client may send
};

// Looks at the frame that begins at the first byte, and sets `frame` only if it is complete. A broken frame
// is recognised as soon as its header has arrived.
ipc_frame_state ipc_first_frame(std::string_view bytes, ipc_frame &frame);
