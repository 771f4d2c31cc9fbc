// Computes where the parts of the window switcher go.
#pragma once

#include "../wlr.hpp"

#include <array>

inline constexpr int switcher_row_height = 34, switcher_list_width = 520, switcher_list_margin = 12;

// Returns the place of the list look's panel in the middle of an area, in layout coordinates.
wlr_box switcher_list(const wlr_box &area, int count);

// The cards of the thumbnail look. All measures are layout units.
struct switcher_cards {
    int count, width, gap, picture_height;
    wlr_box panel; // layout coordinates
};

// Cards shrink in a narrow area, but they stay recognisable, so the panel may be wider than the area.
switcher_cards switcher_cards_in(const wlr_box &area, int count);
// Returns a card's box in the panel.
wlr_box switcher_card(const switcher_cards &cards, int index);
// Returns where the picture of a window of this size goes, in layout coordinates.
wlr_box switcher_picture(const switcher_cards &cards, int index, const wlr_box &window);

// Returns the top, bottom, left and right of the frame around a window's content and the bar above it.
std::array<wlr_box, 4> switcher_frame(const wlr_box &content, int bar);
