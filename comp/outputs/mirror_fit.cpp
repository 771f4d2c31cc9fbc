#include "mirror_fit.hpp"

#include <algorithm>
#include <cmath>

static int rounded(double place)
{
    return int(std::trunc(place + 0.5));
}

static int rounded_length(double length)
{
    return std::max(rounded(length), 1);
}

mirror_fit fit_picture(int picture_width, int picture_height, int width, int height)
{
    const double scale = std::min(double(width) / picture_width, double(height) / picture_height);
    const int w = rounded_length(picture_width * scale), h = rounded_length(picture_height * scale);
    return {.box = {.x = (width - w) / 2, .y = (height - h) / 2, .width = w, .height = h},
            .scale = double(w) / picture_width};
}

wlr_box fit_pointer(const mirror_fit &fit, double x, double y, double hx, double hy, int width, int height)
{
    return {.x = rounded((x - hx) * fit.scale) + fit.box.x,
            .y = rounded((y - hy) * fit.scale) + fit.box.y,
            .width = rounded_length(width * fit.scale),
            .height = rounded_length(height * fit.scale)};
}
