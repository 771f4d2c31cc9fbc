// The codes of the IPC socket, for the compositor and for programs that talk to it.
#pragma once

#include "../events.hpp"

#include <cstddef>
#include <cstdint>
#include <string_view>

// A frame consists of the magic, the payload's length, the message type and the payload. Both numbers have 32
// bits in host byte order.
inline constexpr std::string_view ipc_magic = "i3-ipc";
inline constexpr size_t ipc_header_size = 14;
inline constexpr uint32_t ipc_largest_request = 0x100000; // payload bytes that a client may send in one frame
inline constexpr int ipc_most_fps = 480; // of pictures that a client may ask for

enum vnt_ipc_msg : uint32_t {
    VNT_MSG_COMMAND = 0,
    VNT_MSG_GET_WORKSPACES = 1,
    VNT_MSG_GET_WINDOWS = 2,
    VNT_MSG_GET_OUTPUTS = 3,
    VNT_MSG_SUBSCRIBE = 4,
    VNT_MSG_GET_THUMBNAIL = 5,
    VNT_MSG_CAPTURE = 6,
    VNT_MSG_CAPTURE_DMABUF = 7,
    VNT_MSG_CAPTURE_SUBSCRIBE = 8,
    VNT_MSG_CAPTURE_FRAME = 9, // only the compositor sends it
};

// An event's frame has no payload; its type is the event's code with this bit set.
inline constexpr uint32_t ipc_event_bit = 0x80000000;
