#include "overview_boxes.hpp"

#include <algorithm>
#include <cmath>
#include <limits>

static constexpr int outer_margin = 48, gap = 24, least_cell = 40, least_picture = 20;
static constexpr int most_percent_of_screen = 68;
static constexpr int badge_inset = 4;
static constexpr int strip_width = 240, thumbnail_width = 204, strip_margin = 18, thumbnail_gap = 16;
static constexpr int least_thumbnail = 8, least_area_width = 100;
static constexpr int least_sketch_width = 3, least_sketch_height = 2, sketch_inset = 2;
static constexpr double dragged_scale = 0.42;
static constexpr int least_dragged_width = 48, least_dragged_height = 32;

struct extent {
    int width, height;
};

// Returns the smallest number of columns whose square holds the windows.
static int columns_for(int count)
{
    int columns = 1;
    while (columns * columns < count)
        columns++;
    return columns;
}

static int cell_size(int available, int cells)
{
    return std::max((available - gap * (cells - 1) - 2 * outer_margin) / cells, least_cell);
}

overview_grid overview_grid_in(const wlr_box &area, int count)
{
    const int columns = columns_for(count), rows = std::max((count + columns - 1) / columns, 1);
    const int width = cell_size(area.width, columns), height = cell_size(area.height, rows);
    const int below_title = height - overview_title_height;
    return {.count = count,
            .columns = columns,
            .first{.x = area.x + outer_margin, .y = area.y + outer_margin, .width = width, .height = height},
            .picture_height = below_title >= least_picture ? below_title : height};
}

wlr_box overview_cell(const overview_grid &grid, int index)
{
    const int row = index / grid.columns, column = index % grid.columns;
    const int in_row = std::min(grid.columns, grid.count - row * grid.columns);
    const int stride = grid.first.width + gap;
    wlr_box cell = grid.first;
    cell.x += column * stride + (grid.columns - in_row) * stride / 2;
    cell.y += row * (grid.first.height + gap);
    return cell;
}

static extent fit_into_cell(const overview_grid &grid, double aspect)
{
    extent e{.width = grid.first.width,
             .height = int(std::min(grid.first.width / aspect, grid.picture_height + 1.0))};
    if (e.height > grid.picture_height)
        e = {.width = int(grid.picture_height * aspect), .height = grid.picture_height};
    return {.width = std::clamp(e.width, 1, grid.first.width), .height = e.height};
}

static extent fit_into_screen(extent e, const wlr_box &screen, double aspect)
{
    const int most_width = screen.width * most_percent_of_screen / 100,
              most_height = screen.height * most_percent_of_screen / 100;
    if (most_width >= 1 && e.width > most_width)
        e = {.width = most_width, .height = int(most_width / aspect)};
    if (most_height >= 1 && e.height > most_height)
        e = {.width = int(most_height * aspect), .height = most_height};
    return e;
}

wlr_box overview_tile(const overview_grid &grid, int index, const wlr_box &window, const wlr_box &screen)
{
    const double aspect = window.width > 0 && window.height > 0 ? double(window.width) / window.height : 1;
    extent e = fit_into_cell(grid, aspect);
    if (window.width > 0 && e.width > window.width)
        e = {.width = window.width, .height = window.height};
    e = fit_into_screen(e, screen, aspect);
    e = {.width = std::max(e.width, 1), .height = std::max(e.height, 1)};
    const wlr_box cell = overview_cell(grid, index);
    return {.x = cell.x + (cell.width - e.width) / 2,
            .y = cell.y + (grid.picture_height - e.height) / 2,
            .width = e.width,
            .height = e.height};
}

wlr_box overview_close_badge(const wlr_box &tile)
{
    return {.x = tile.x + tile.width - badge_inset - overview_badge,
            .y = tile.y + badge_inset,
            .width = overview_badge,
            .height = overview_badge};
}

// The thumbnails have the screen's shape. They shrink where the column is too short for all of them.
static extent thumbnail_size(int available, const wlr_box &screen, int count, int name, int gaps)
{
    const double aspect = double(screen.width) / screen.height;
    const int full_height = int(thumbnail_width / aspect);
    if (available >= (full_height + name) * count + gaps)
        return {.width = thumbnail_width, .height = std::max(full_height, least_thumbnail)};
    const int height = std::max((available - gaps - name * count) / count, least_thumbnail);
    return {.width = std::max(int(height * aspect), least_thumbnail), .height = height};
}

overview_strip overview_strip_in(const wlr_box &area, const wlr_box &screen, int count, bool named)
{
    const int name = named ? overview_name_height : 0, gaps = (count - 1) * thumbnail_gap;
    const extent e = thumbnail_size(area.height - 2 * strip_margin, screen, count, name, gaps);
    const int left_over = area.height - ((e.height + name) * count + gaps);
    return {.first{.x = area.x + strip_margin + (thumbnail_width - e.width) / 2,
                   .y = area.y + (left_over < 2 * strip_margin ? strip_margin : left_over / 2),
                   .width = e.width,
                   .height = e.height},
            .step = e.height + name + thumbnail_gap,
            .scale = double(e.width) / screen.width};
}

wlr_box overview_thumbnail(const overview_strip &strip, int index)
{
    wlr_box box = strip.first;
    box.y += index * strip.step;
    return box;
}

std::optional<wlr_box> overview_sketch(const overview_strip &strip, const wlr_box &window,
                                       const wlr_box &screen)
{
    wlr_box box{.x = std::max(int((window.x - screen.x) * strip.scale), sketch_inset),
                .y = std::max(int((window.y - screen.y) * strip.scale), sketch_inset),
                .width = std::max(int(window.width * strip.scale), least_sketch_width),
                .height = std::max(int(window.height * strip.scale), least_sketch_height)};
    box.width = std::min(box.width, strip.first.width - sketch_inset - box.x);
    box.height = std::min(box.height, strip.first.height - sketch_inset - box.y);
    if (box.width <= 0 || box.height <= 0)
        return std::nullopt;
    return box;
}

wlr_box overview_beside_strip(const wlr_box &area)
{
    wlr_box left = area;
    left.x += strip_width;
    left.width = std::max(left.width - strip_width, least_area_width);
    return left;
}

wlr_box overview_around(const wlr_box &box, int margin)
{
    return {.x = box.x - margin,
            .y = box.y - margin,
            .width = box.width + 2 * margin,
            .height = box.height + 2 * margin};
}

// Whether a distance goes in the direction that is asked for. Every distance does where none is.
static bool leads(double distance, int direction)
{
    return direction == 0 || distance * direction > 1;
}

// A tile that lies aside counts as further away.
static double cost(double dx, double dy, bool sideways)
{
    return sideways ? std::abs(dx) + 2 * std::abs(dy) : std::abs(dy) + 2 * std::abs(dx);
}

int overview_neighbour(std::span<const wlr_box> tiles, int selected, int dx, int dy)
{
    const auto center_x = [](const wlr_box &b) { return b.x + b.width / 2.0; };
    const auto center_y = [](const wlr_box &b) { return b.y + b.height / 2.0; };
    const wlr_box &from = tiles[size_t(selected)];
    int nearest = selected;
    double least = std::numeric_limits<double>::max();
    for (int i = 0; i < int(tiles.size()); i++) {
        const double across = center_x(tiles[size_t(i)]) - center_x(from),
                     down = center_y(tiles[size_t(i)]) - center_y(from);
        if (i == selected || !leads(across, dx) || !leads(down, dy))
            continue;
        if (const double price = cost(across, down, dx != 0); price < least) {
            least = price;
            nearest = i;
        }
    }
    return nearest;
}

wlr_box overview_dragged(const wlr_box &tile, double lx, double ly)
{
    const int width = std::max(int(tile.width * dragged_scale), least_dragged_width),
              height = std::max(int(tile.height * dragged_scale), least_dragged_height);
    return {.x = int(lx - width / 2.0), .y = int(ly - height / 2.0), .width = width, .height = height};
}

wlr_box overview_between(const wlr_box &from, const wlr_box &to, double part)
{
    const auto between = [part](int a, int b) { return int(a + (b - a) * part); };
    return {.x = between(from.x, to.x),
            .y = between(from.y, to.y),
            .width = std::max(between(from.width, to.width), 1),
            .height = std::max(between(from.height, to.height), 1)};
}
