#include "frame.hpp"

#include <cstring>

static constexpr size_t length_at = ipc_magic.size();
static constexpr size_t type_at = length_at + sizeof(uint32_t);
static_assert(type_at + sizeof(uint32_t) == ipc_header_size);

ipc_header ipc_make_header(uint32_t type, uint32_t payload_length)
{
    ipc_header header{};
    ipc_magic.copy(header.data(), ipc_magic.size());
    memcpy(header.data() + length_at, &payload_length, sizeof payload_length);
    memcpy(header.data() + type_at, &type, sizeof type);
    return header;
}

static uint32_t number_at(std::string_view bytes, size_t offset)
{
    uint32_t number = 0;
    memcpy(&number, bytes.data() + offset, sizeof number);
    return number;
}

ipc_frame_state ipc_first_frame(std::string_view bytes, ipc_frame &frame)
{
    if (bytes.size() < ipc_header_size)
        return ipc_frame_state::incomplete;
    const uint32_t length = number_at(bytes, length_at);
    if (!bytes.starts_with(ipc_magic) || length > ipc_largest_request)
        return ipc_frame_state::broken;
    if (bytes.size() - ipc_header_size < length)
        return ipc_frame_state::incomplete;
    frame = {.type = number_at(bytes, type_at), .payload = bytes.substr(ipc_header_size, length)};
    return ipc_frame_state::complete;
}
