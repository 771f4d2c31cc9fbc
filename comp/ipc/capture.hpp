// Snapshots of windows, outputs and parts of the layout.
//
// Pixels are four bytes in the order red, green, blue, alpha. Each function gives a memory file that the
// caller closes, and appends the reply that describes it to `meta`; on failure -1, with nothing appended.
// max_dim is the longest side in pixels, 0 for no limit.
#pragma once

#include "../fwd.hpp"
#include "../wlr.hpp"

#include <string_view>

struct strbuf;

// Runs the text of a VNT_MSG_CAPTURE request.
int ipc_capture(vantore_server &server, std::string_view request, strbuf &meta);
// Runs the text of a VNT_MSG_GET_THUMBNAIL request.
int ipc_thumbnail(vantore_server &server, std::string_view request, strbuf &meta);

// The window's main surface as its client drew it, in buffer pixels, with the client's alpha.
int vnt_capture_window_memfd(vantore_server &server, uint32_t wid, int max_dim, strbuf &meta);
// The output's picture in its own pixels, before its transform. An empty name or "@focused" is the current
// output.
int vnt_capture_output_memfd(vantore_server &server, std::string_view name, int max_dim, strbuf &meta);
// A box in layout coordinates of 1 to 32768 each way. What no output shows is black; a region that no output
// shows fails. Layout units are taken for pixels: of a scaled output the region shows the top left part.
int vnt_capture_layout_region(vantore_server &server, const wlr_box &region, int max_dim, strbuf &meta);
