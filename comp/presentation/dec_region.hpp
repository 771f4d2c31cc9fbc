// The parts of a title bar, as arithmetic: x from the left and y from the top of the window's content.
#pragma once

enum vantore_dec_region : unsigned char {
    DEC_NONE,
    DEC_TITLEBAR,
    DEC_CLOSE,
    DEC_MINIMIZE,
    DEC_MAXIMIZE,
    DEC_GRIP, // drawn, but switched off; nothing hits it
};

inline constexpr int dec_button_size = 14;
inline constexpr int dec_button_y = -22;
// How far a bar one pixel wide may reach beyond its left edge, the highlight of a button included.
inline constexpr int dec_reach_left = 74;

// Left edge of a button in a bar of this width; may lie left of 0 in a narrow one.
int dec_button_x(int w, vantore_dec_region region);

// What lies at a point of the bar; anywhere else in it is DEC_TITLEBAR.
vantore_dec_region dec_region_at(int w, double rx, double ry);
