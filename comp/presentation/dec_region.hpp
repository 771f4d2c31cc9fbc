// The parts of a title bar. x counts from the left and y from the top of the window's content.
#pragma once

enum vantore_dec_region : unsigned char {
    DEC_NONE,
    DEC_TITLEBAR,
    DEC_CLOSE,
    DEC_MINIMIZE,
    DEC_MAXIMIZE,
    DEC_GRIP, // its node is never enabled, and nothing hits it
};

inline constexpr int dec_button_size = 14;
inline constexpr int dec_button_y = -22;
// How far the parts of a bar one pixel wide may extend beyond its left edge, including the highlight of a
// button.
inline constexpr int dec_reach_left = 74;

// Returns the left edge of a button in a bar of width `w`. It may be negative in a narrow bar.
int dec_button_x(int w, vantore_dec_region region);

// Returns the part at a point of the bar. Any point outside the buttons is DEC_TITLEBAR.
vantore_dec_region dec_region_at(int w, double rx, double ry);
