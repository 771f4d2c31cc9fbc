// Where a rule of the user puts a window.
#pragma once

enum vantore_place : unsigned char {
    PLACE_NONE,
    PLACE_TOP_RIGHT,
    PLACE_TOP_LEFT,
    PLACE_BOTTOM_RIGHT,
    PLACE_BOTTOM_LEFT,
    PLACE_CENTER
};
