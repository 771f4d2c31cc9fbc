// Hands out a window's picture as a buffer in graphics memory. No pixel passes through the processor on its
// way to the program that asks.
#pragma once

#include "../fwd.hpp"
#include "../handles.hpp"

#include <string_view>

struct strbuf;

// Draws the window's surface and its subsurfaces into a buffer that nothing draws into again before it is
// unlocked. The descriptors in `attributes` stay the buffer's. Returns null on failure.
locked_buffer cap_render_toplevel(vantore_server &server, const vantore_toplevel &t,
                                  wlr_dmabuf_attributes &attributes);

// Appends the JSON object that describes a buffer to the program that gets it. `times` are members that it
// also contains.
void append_dmabuf(strbuf &sb, const wlr_dmabuf_attributes &attributes, std::string_view times);

// Runs a VNT_MSG_CAPTURE_DMABUF request. The buffer stays locked until the next such request of any client.
void ipc_capture_dmabuf_reply(vnt_ipc_client &client, uint32_t type, std::string_view payload);

// Frees the swapchain and the buffer that was handed out last.
void capture_dmabuf_reset(vantore_server &server);
// Ends everything that captures the window.
void capture_dmabuf_forget(vantore_server &server, uint32_t id);

// From now on, captures end with their windows.
void capture_dmabuf_begin(vantore_server &server);
// Frees everything. Call it when the clients are gone, and before the renderer is.
void capture_dmabuf_end(vantore_server &server);
