#pragma once

enum vantore_cursor_mode : unsigned char {
    VANTORE_CURSOR_PASSTHROUGH, // clients have the pointer
    VANTORE_CURSOR_MOVE,
    VANTORE_CURSOR_RESIZE,
};
