// Takes snapshots of windows, outputs and parts of the layout.
//
// A pixel is four bytes in the order red, green, blue, alpha. Each function returns a memory file, which the
// caller closes, and appends the reply that describes it to `meta`. On failure it returns -1 and appends
// nothing. max_dim limits the longest side in pixels; 0 means no limit.
#pragma once

#include "../fwd.hpp"
#include "../wlr.hpp"

#include <string_view>

struct strbuf;

// The reply to a capture that failed.
inline constexpr std::string_view ipc_no_capture = R"({"ok":false})";

// Runs the text of a VNT_MSG_CAPTURE request.
int ipc_capture(vantore_server &server, std::string_view request, strbuf &meta);
// Runs the text of a VNT_MSG_GET_THUMBNAIL request.
int ipc_thumbnail(vantore_server &server, std::string_view request, strbuf &meta);

// Captures the window's main surface as its client drew it, in buffer pixels and with the client's alpha.
int vnt_capture_window_memfd(vantore_server &server, uint32_t wid, int max_dim, strbuf &meta);
// Captures the output's picture as its buffer holds it: in the pixels of its mode and with its transform
// applied. An empty name or "@focused" means the current output.
int vnt_capture_output_memfd(vantore_server &server, std::string_view name, int max_dim, strbuf &meta);
// Captures a box in layout coordinates whose sides are 1 to 32768 long. What no output shows is black, and
// the capture fails if no output shows any of it. It takes layout units for pixels, so a box over an output
// with a scale above 1 shows only the top left part of that output.
int vnt_capture_layout_region(vantore_server &server, const wlr_box &region, int max_dim, strbuf &meta);
