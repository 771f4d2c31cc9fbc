// The changes that the compositor announces. The IPC socket uses the same codes.
#pragma once

#include <cstdint>

enum vnt_event : uint32_t {
    VNT_EVT_WORKSPACES = 1,
    VNT_EVT_WINDOWS = 2,
    VNT_EVT_OUTPUTS = 3,
    VNT_EVT_LAUNCHER = 4, // asks the launcher to open
    VNT_EVT_RELOADED = 5,
    VNT_EVT_VOLUME = 6,
    VNT_EVT_BRIGHTNESS = 7,
    VNT_EVT_SHORTCUTS = 8, // asks the shortcut overlay to show or hide
    VNT_EVT_FULLSCREEN_ON = 9,
    VNT_EVT_FULLSCREEN_OFF = 10,
    VNT_EVT_CLIPBOARD = 11, // asks the clipboard picker to open
};
