// Small text files in XDG_RUNTIME_DIR for helper programs without an IPC connection. Each is rewritten in
// place. Without the variable no file is written, and a file that can't be opened is skipped silently.
#pragma once

#include <cstdint>
#include <span>

// Writes one line for each name and leaves out null names.
void write_outputs_file(std::span<const char *const> names);

// Writes three lines about a fullscreen window: its output, its app id and its id. A null text gives an empty
// line.
void write_fullscreen_file(const char *output, const char *app_id, uint32_t id);
void remove_fullscreen_file();

// Writes the render node of the DRM device to a file and exports it as VNT_RENDER_NODE. A negative descriptor
// means that there is no device, and nothing is published.
void publish_render_node(int drm_fd);
