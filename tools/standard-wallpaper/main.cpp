// Draws the standard wallpaper: ridges that fade into a night sky, with a low moon and its light on the haze.
// All chance comes from a fixed seed, so every build draws the same picture.

#include <array>
#include <cairo.h>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <random>

namespace
{

constexpr double width = 3840, height = 2160;
constexpr double pi = 3.14159265358979323846;

struct rgb {
    double red, green, blue;
};

constexpr rgb sky_top{0.035, 0.045, 0.085}, sky_low{0.135, 0.175, 0.265};
constexpr rgb ridge_far{0.115, 0.155, 0.235}, ridge_near{0.022, 0.030, 0.052};
constexpr rgb moonlight{0.80, 0.84, 0.90};
constexpr double moon_x = 0.71 * width, moon_y = 0.36 * height, moon_radius = 92;
constexpr int ridges = 6;

rgb mixed(const rgb &from, const rgb &to, double share)
{
    return {std::lerp(from.red, to.red, share), std::lerp(from.green, to.green, share),
            std::lerp(from.blue, to.blue, share)};
}

void add_stop(cairo_pattern_t *gradient, double at, const rgb &color, double alpha = 1)
{
    cairo_pattern_add_color_stop_rgba(gradient, at, color.red, color.green, color.blue, alpha);
}

// Fills the current path with the gradient and frees it.
void fill_with(cairo_t *cr, cairo_pattern_t *gradient)
{
    cairo_set_source(cr, gradient);
    cairo_fill(cr);
    cairo_pattern_destroy(gradient);
}

void draw_sky(cairo_t *cr)
{
    cairo_pattern_t *sky = cairo_pattern_create_linear(0, 0, 0, 0.72 * height);
    add_stop(sky, 0, sky_top);
    add_stop(sky, 1, sky_low);
    cairo_rectangle(cr, 0, 0, width, height);
    fill_with(cr, sky);
}

// The generator's numbers are the same everywhere. Those of the library's distributions need not be.
double chance(std::minstd_rand &random)
{
    return double(random() - std::minstd_rand::min()) /
           double(std::minstd_rand::max() - std::minstd_rand::min());
}

void draw_stars(cairo_t *cr)
{
    std::minstd_rand random{20};
    for (int i = 0; i < 260; i++) {
        const double x = chance(random) * width, y = std::pow(chance(random), 1.6) * 0.5 * height;
        const double brightness = chance(random);
        cairo_set_source_rgba(cr, moonlight.red, moonlight.green, moonlight.blue,
                              0.08 + 0.4 * brightness * brightness);
        cairo_arc(cr, x, y, 0.9 + 1.1 * brightness, 0, 2 * pi);
        cairo_fill(cr);
    }
}

void draw_glow(cairo_t *cr, double radius, double alpha)
{
    cairo_pattern_t *glow =
        cairo_pattern_create_radial(moon_x, moon_y, moon_radius * 0.9, moon_x, moon_y, radius);
    add_stop(glow, 0, moonlight, alpha);
    add_stop(glow, 0.35, moonlight, alpha * 0.35);
    add_stop(glow, 1, moonlight, 0);
    cairo_rectangle(cr, 0, 0, width, height);
    fill_with(cr, glow);
}

void draw_moon(cairo_t *cr)
{
    draw_glow(cr, 1500, 0.10);
    draw_glow(cr, 420, 0.16);
    cairo_pattern_t *disc =
        cairo_pattern_create_radial(moon_x - 26, moon_y - 30, 10, moon_x, moon_y, moon_radius);
    add_stop(disc, 0, mixed(moonlight, {1, 1, 1}, 0.4));
    add_stop(disc, 1, moonlight);
    cairo_arc(cr, moon_x, moon_y, moon_radius, 0, 2 * pi);
    fill_with(cr, disc);
}

// A sum of waves. Nearer ridges have longer waves and less detail, as hills at the viewer's feet do.
struct ridge_shape {
    std::array<double, 7> phases{}, sizes{};
    double base, length;
};

ridge_shape shape_of(int ridge)
{
    std::minstd_rand random{uint32_t(101 + 37 * ridge)};
    const double share = double(ridge) / (ridges - 1);
    ridge_shape shape{.base = height * (0.545 + 0.36 * share * std::sqrt(share)),
                      .length = 1250 + 900 * share};
    double size = 96 - 20 * share;
    for (size_t wave = 0; wave < shape.sizes.size(); wave++, size *= 0.47 - 0.08 * share) {
        shape.phases[wave] = chance(random) * 2 * pi;
        shape.sizes[wave] = size * (0.75 + 0.5 * chance(random));
    }
    return shape;
}

double ridge_y(const ridge_shape &shape, double x)
{
    double y = shape.base, length = shape.length;
    for (size_t wave = 0; wave < shape.sizes.size(); wave++, length /= 2.03)
        y += shape.sizes[wave] * std::sin(x * 2 * pi / length + shape.phases[wave]);
    return y;
}

// Haze lightens the foot of each ridge, more so far away.
void draw_ridge(cairo_t *cr, int ridge)
{
    const ridge_shape shape = shape_of(ridge);
    const double share = double(ridge) / (ridges - 1);
    cairo_move_to(cr, 0, height);
    for (double x = 0; x <= width; x += 4)
        cairo_line_to(cr, x, ridge_y(shape, x));
    cairo_line_to(cr, width, height);
    cairo_close_path(cr);
    const rgb color = mixed(ridge_far, ridge_near, std::pow(share, 0.7));
    cairo_pattern_t *slope = cairo_pattern_create_linear(0, shape.base - 140, 0, shape.base + 330);
    add_stop(slope, 0, color);
    add_stop(slope, 1, mixed(color, sky_low, 0.42 * (1 - share)));
    fill_with(cr, slope);
}

bool draw(const char *path)
{
    cairo_surface_t *surface = cairo_image_surface_create(CAIRO_FORMAT_RGB24, int(width), int(height));
    cairo_t *cr = cairo_create(surface);
    draw_sky(cr);
    draw_stars(cr);
    draw_moon(cr);
    for (int ridge = 0; ridge < ridges; ridge++)
        draw_ridge(cr, ridge);
    cairo_destroy(cr);
    const bool written = cairo_surface_write_to_png(surface, path) == CAIRO_STATUS_SUCCESS;
    cairo_surface_destroy(surface);
    return written;
}

} // namespace

int main(int argc, char **argv)
{
    if (argc != 2) {
        fputs("usage: draw-wallpaper FILE\n", stderr);
        return 2;
    }
    if (!draw(argv[1])) {
        fprintf(stderr, "draw-wallpaper: can't write %s\n", argv[1]);
        return 1;
    }
    return 0;
}
