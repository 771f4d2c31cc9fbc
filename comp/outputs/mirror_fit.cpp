#include "mirror_fit.hpp"

#include <algorithm>

static int rounded(double length)
{
    return std::max(int(length + 0.5), 1);
}

mirror_fit fit_picture(int picture_width, int picture_height, int width, int height)
{
    const double scale = std::min(double(width) / picture_width, double(height) / picture_height);
    const int w = rounded(picture_width * scale), h = rounded(picture_height * scale);
    return {.box = {.x = (width - w) / 2, .y = (height - h) / 2, .width = w, .height = h},
            .scale = double(w) / picture_width};
}

wlr_box fit_pointer(const mirror_fit &fit, double x, double y, double hx, double hy, int width, int height)
{
    return {.x = int((x - hx) * fit.scale + 0.5) + fit.box.x,
            .y = int((y - hy) * fit.scale + 0.5) + fit.box.y,
            .width = rounded(width * fit.scale),
            .height = rounded(height * fit.scale)};
}
