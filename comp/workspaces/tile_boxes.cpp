#include "tile_boxes.hpp"

#include <algorithm>

// A section of an axis.
struct stretch {
    int start, length;
};

static double weighs(double weight)
{
    return weight > 0 ? weight : 1.0;
}

static double total_width(std::span<const tile_weight> tiles)
{
    double total = 0;
    for (const tile_weight &tile : tiles)
        total += weighs(tile.width);
    return total;
}

// Divides an axis from its start, tile by tile.
class divider
{
public:
    // `available` is the length that the tiles share, without the gaps between them.
    divider(stretch axis, int available, int gap, double total)
        : end(axis.start + axis.length), at(axis.start), shared(available), between(gap), sum(total)
    {
    }

    stretch next(double weight)
    {
        const stretch piece{.start = at, .length = int(shared * (weight / sum))};
        at += piece.length + between;
        return piece;
    }
    // Makes the next piece at least this long and moves the pieces after it.
    stretch next_at_least(int least, double weight)
    {
        stretch piece = next(weight);
        const int missing = std::max(least - piece.length, 0);
        piece.length += missing;
        at += missing;
        return piece;
    }
    // Returns all that is left.
    [[nodiscard]] stretch last() const { return {.start = at, .length = end - at}; }

private:
    int end, at, shared, between;
    double sum;
};

wlr_box tile_area(const wlr_box &usable, int gap)
{
    return {.x = usable.x + gap,
            .y = usable.y + gap,
            .width = std::max(usable.width - 2 * gap, 1),
            .height = std::max(usable.height - 2 * gap, 1)};
}

static void fill_row(std::span<const tile_weight> weights, std::span<wlr_box> boxes, stretch width,
                     stretch height, int gap)
{
    const int count = int(weights.size());
    divider across{width, width.length - (count - 1) * gap, gap, total_width(weights)};
    for (int i = 0; i < count; i++) {
        const stretch piece = i < count - 1 ? across.next(weighs(weights[size_t(i)].width)) : across.last();
        boxes[size_t(i)] = {
            .x = piece.start, .y = height.start, .width = std::max(piece.length, 1), .height = height.length};
    }
}

static void fill_column(std::span<const tile_weight> weights, std::span<wlr_box> boxes, stretch width,
                        stretch height, int gap)
{
    const int count = int(weights.size());
    divider down{height, height.length - (count - 1) * gap, gap, total_width(weights)};
    for (int i = 0; i < count; i++) {
        const stretch piece =
            i < count - 1 ? down.next_at_least(1, weighs(weights[size_t(i)].width)) : down.last();
        boxes[size_t(i)] = {.x = width.start,
                            .y = piece.start,
                            .width = std::max(width.length, 1),
                            .height = std::max(piece.length, 1)};
    }
}

static void master_boxes(const tile_rules &rules, std::span<const tile_weight> weights,
                         std::span<wlr_box> boxes)
{
    const wlr_box &area = rules.area;
    if (weights.size() == 1) {
        boxes[0] = area;
        return;
    }
    const int master = int(area.width * rules.master_ratio) - rules.gap / 2;
    boxes[0] = {.x = area.x, .y = area.y, .width = std::max(master, 1), .height = area.height};
    const stretch width{.start = area.x + master + rules.gap, .length = area.width - master - rules.gap};
    fill_column(weights.subspan(1), boxes.subspan(1), width, {area.y, area.height}, rules.gap);
}

static double row_weight(std::span<const tile_weight> row)
{
    double weight = 1.0;
    for (const tile_weight &tile : row)
        weight = std::max(weight, tile.height);
    return weight;
}

// Returns the side of the smallest square that holds all tiles, and at least 2.
static size_t grid_columns(size_t count)
{
    size_t columns = 2;
    while (columns * columns < count)
        columns++;
    return columns;
}

static void grid_boxes(const tile_rules &rules, std::span<const tile_weight> weights,
                       std::span<wlr_box> boxes)
{
    const wlr_box &area = rules.area;
    const size_t columns = weights.size() > 1 ? grid_columns(weights.size()) : 1;
    const size_t rows = (weights.size() + columns - 1) / columns;
    const auto row_of = [&](auto tiles, size_t row) {
        return tiles.subspan(row * columns, std::min(columns, tiles.size() - row * columns));
    };
    double total = 0;
    for (size_t row = 0; row < rows; row++)
        total += row_weight(row_of(weights, row));
    divider down{{area.y, area.height}, area.height - int(rows - 1) * rules.gap, rules.gap, total};
    for (size_t row = 0; row < rows; row++) {
        const auto tiles = row_of(weights, row);
        const stretch height = row < rows - 1 ? down.next(row_weight(tiles)) : down.last();
        fill_row(tiles, row_of(boxes, row), {area.x, area.width}, height, rules.gap);
    }
}

void tile_boxes(const tile_rules &rules, std::span<const tile_weight> weights, std::span<wlr_box> boxes)
{
    if (weights.empty())
        return;
    const wlr_box &area = rules.area;
    switch (rules.mode) {
    case TM_MASTER:
        master_boxes(rules, weights, boxes);
        return;
    case TM_GRID:
        grid_boxes(rules, weights, boxes);
        return;
    case TM_COLUMNS:
        fill_row(weights, boxes, {area.x, area.width}, {area.y, area.height}, rules.gap);
        return;
    case TM_MONOCLE:
        std::ranges::fill(boxes, area);
        return;
    }
}
