// Commands for a person who looks for a fault: they write down what is, and change nothing.
#pragma once

#include "../fwd.hpp"
#include "../wlr.hpp"
#include "request_text.hpp"

// Writes all layer surfaces as JSON into the file of g_platform.layer_dump. Texts are not escaped: it is for
// a person's eyes. Only a regular file is written to; where that fails nothing happens.
void ipc_dump_layers(vantore_server &server, ipc_words &words);

// Logs how the window that the next word names as id:N could be captured.
void ipc_capture_probe(vantore_server &server, ipc_words &words);

// The same for a buffer, which may be null, and so may the app id.
void log_capture_way(uint32_t id, const char *app_id, wlr_buffer *buffer);
