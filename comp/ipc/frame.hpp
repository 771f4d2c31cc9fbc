// Frames of the IPC socket, taken from bytes and made into bytes. No socket, no compositor.
#pragma once

#include "protocol.hpp"

#include <array>
#include <string_view>

using ipc_header = std::array<char, ipc_header_size>;

// The header of a frame with this many bytes of payload.
ipc_header ipc_make_header(uint32_t type, uint32_t payload_length);

struct ipc_frame {
    uint32_t type = 0;
    std::string_view payload; // within the bytes that were looked at
};

enum class ipc_frame_state : unsigned char {
    incomplete, // more bytes must come
    complete,
    broken, // no frame begins here, or one larger than a client may send
};

// Looks at the frame that begins at the first byte. `frame` is set only when it is complete. A broken frame
// is found as soon as its header is there.
ipc_frame_state ipc_first_frame(std::string_view bytes, ipc_frame &frame);
