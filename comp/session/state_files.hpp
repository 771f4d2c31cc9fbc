// Small text files in XDG_RUNTIME_DIR for helper programs without an IPC connection. Each is rewritten in
// place. Without the variable no file is written, and a file that can't be opened is skipped silently.
#pragma once

#include <cstdint>
#include <span>

// One line for each name; null names are left out.
void write_outputs_file(std::span<const char *const> names);

// Three lines about a fullscreen window: its output, its app id and its id. Null texts are written as empty
// lines.
void write_fullscreen_file(const char *output, const char *app_id, uint32_t id);
void remove_fullscreen_file();

// The render node of the DRM device, also exported as VNT_RENDER_NODE. A negative descriptor means that there
// is no device, and nothing is published.
void publish_render_node(int drm_fd);
