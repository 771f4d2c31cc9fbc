// Reads any bytes as what a client sends over the IPC socket: as frames, and as texts of requests.

#include "fuzzing.hpp"
#include "ipc/frame.hpp"
#include "ipc/request_text.hpp"

#include <string>

static void read_texts(std::string_view text)
{
    const capture_spec spec = ipc_parse_capture(text);
    require(spec.max_dim >= 0 && spec.output_name.back() == '\0');
    require(spec.kind == capture_kind::window || spec.window_id == 0);
    (void)ipc_parse_thumbnail(text);
    const capture_wish wish = ipc_parse_capture_wish(text);
    require(wish.fps >= 1 && wish.fps <= 480);
    ipc_words words{text};
    size_t letters = 0;
    while (const char *word = words.next()) {
        require(*word != '\0');
        letters += std::string_view{word}.size();
        (void)ipc_parse_size(word);
    }
    require(letters <= text.size());
}

// Takes complete frames off the front, as the socket's reader does. False when the rest can't be a frame.
static bool walk(std::string &buffered, std::string &log)
{
    std::string_view rest = buffered;
    ipc_frame frame;
    ipc_frame_state state{};
    while ((state = ipc_first_frame(rest, frame)) == ipc_frame_state::complete) {
        require(frame.payload.size() <= ipc_largest_request);
        require(frame.payload.size() + ipc_header_size <= rest.size());
        ((log += std::to_string(frame.type)) += ':') += frame.payload;
        read_texts(frame.payload);
        rest.remove_prefix(ipc_header_size + frame.payload.size());
    }
    buffered.erase(0, buffered.size() - rest.size());
    return state == ipc_frame_state::incomplete;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const std::string_view bytes{reinterpret_cast<const char *>(data), size};
    read_texts(bytes);
    std::string whole{bytes}, log_whole;
    const bool whole_stands = walk(whole, log_whole);
    // The same frames come out if the bytes arrive in pieces.
    std::string pieces, log_pieces;
    bool pieces_stand = true;
    for (size_t at = 0; at < size && pieces_stand; at += 5) {
        pieces += bytes.substr(at, 5);
        pieces_stand = walk(pieces, log_pieces);
    }
    require(whole_stands == pieces_stand && log_whole == log_pieces);
    return 0;
}
