#include "switcher_boxes.hpp"

#include <algorithm>

static constexpr int card_width = 220, picture_height = 132, card_gap = 14;
static constexpr int least_card_width = 90, least_picture_height = 54;
static constexpr int panel_margin = 18, around_pictures = 62, beside_panel = 60;
static constexpr int below_picture = 26, picture_inset_x = 12, picture_inset_y = 8;
static constexpr int picture_left = 24, picture_top = 48;
static constexpr int frame_width = 3;

static wlr_box centered(const wlr_box &area, int width, int height)
{
    return {.x = area.x + (area.width - width) / 2,
            .y = area.y + (area.height - height) / 2,
            .width = width,
            .height = height};
}

wlr_box switcher_list(const wlr_box &area, int count)
{
    return centered(area, switcher_list_width, count * switcher_row_height + 2 * switcher_list_margin);
}

static int panel_width(int count, int width, int gap)
{
    return count * width + (count - 1) * gap + 2 * panel_margin;
}

switcher_cards switcher_cards_in(const wlr_box &area, int count)
{
    switcher_cards cards{
        .count = count, .width = card_width, .gap = card_gap, .picture_height = picture_height, .panel = {}};
    const int room = std::max(area.width - beside_panel, 0);
    if (const int width = panel_width(count, card_width, card_gap); width > room) {
        const double scale = double(room) / width;
        cards.gap = int(card_gap * scale);
        cards.width = std::max(int(card_width * scale), least_card_width);
        cards.picture_height = std::max(int(picture_height * scale), least_picture_height);
    }
    cards.panel =
        centered(area, panel_width(count, cards.width, cards.gap), cards.picture_height + around_pictures);
    return cards;
}

static int card_offset(const switcher_cards &cards, int index)
{
    return index * (cards.width + cards.gap);
}

wlr_box switcher_card(const switcher_cards &cards, int index)
{
    return {.x = panel_margin + card_offset(cards, index),
            .y = panel_margin,
            .width = cards.width,
            .height = cards.picture_height + below_picture};
}

wlr_box switcher_picture(const switcher_cards &cards, int index, const wlr_box &window)
{
    const wlr_box room{.x = cards.panel.x + picture_left + card_offset(cards, index),
                       .y = cards.panel.y + picture_top,
                       .width = cards.width - picture_inset_x,
                       .height = cards.picture_height - picture_inset_y};
    const double aspect = window.width > 0 && window.height > 0 ? double(window.width) / window.height : 1;
    int width = room.width, height = int(room.width / aspect);
    if (height > room.height) {
        height = room.height;
        width = int(room.height * aspect);
    }
    return centered(room, std::max(width, 1), std::max(height, 1));
}

std::array<wlr_box, 4> switcher_frame(const wlr_box &content, int bar)
{
    const int x = content.x, y = content.y, w = content.width, h = content.height;
    return {{
        {.x = x - frame_width,
         .y = y - bar - frame_width,
         .width = w + 2 * frame_width,
         .height = frame_width},
        {.x = x - frame_width, .y = y + h, .width = w + 2 * frame_width, .height = frame_width},
        {.x = x - frame_width, .y = y - bar, .width = frame_width, .height = bar + h},
        {.x = x + w, .y = y - bar, .width = frame_width, .height = bar + h},
    }};
}
