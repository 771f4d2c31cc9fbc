// Commands for a person who looks for a fault. They report the state of the session and change nothing.
#pragma once

#include "../fwd.hpp"
#include "../wlr.hpp"
#include "request_text.hpp"

// Writes all layer surfaces as JSON to the file g_platform.layer_dump. The texts are not escaped, because
// only people read them. It writes only to a regular file, and on failure it does nothing.
void ipc_dump_layers(vantore_server &server, ipc_words &words);

// Logs how the window that the next word names as id:N could be captured.
void ipc_capture_probe(vantore_server &server, ipc_words &words);

// Logs the same for a buffer. The buffer and the app id may be null.
void log_capture_way(uint32_t id, const char *app_id, wlr_buffer *buffer);
