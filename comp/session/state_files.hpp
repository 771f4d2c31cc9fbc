// Small text files in XDG_RUNTIME_DIR for helper programs without an IPC connection. Rewritten in place;
// without the variable none is written, and a file that can't be opened is passed over in silence.
#pragma once

#include "../fwd.hpp"

// One line for each named output, disabled ones too, newest first.
void write_outputs_file(vantore_server &server);

// Three lines about a fullscreen window: its output, its app id, its id. Empty where it has none.
void write_fullscreen_file(const vantore_toplevel &t);
void remove_fullscreen_file();

// The DRM render node, also exported as VNT_RENDER_NODE. Nothing when the renderer has no DRM device.
void publish_render_node(vantore_server &server);
