// Reads any bytes as a picture file, and scales what comes out.

#include "fuzzing.hpp"
#include "outputs/picture_scale.hpp"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const picture image = load_image_surface(write_file(data, size));
    if (image == nullptr)
        return 0;
    const int width = cairo_image_surface_get_width(image.get());
    const int height = cairo_image_surface_get_height(image.get());
    require(width >= 1 && height >= 1 && width <= longest_picture_side && height <= longest_picture_side);
    require(int64_t{width} * height <= most_picture_pixels);
    const picture shown = scale_picture(image.get(), {.width = 16, .height = 9}, wp_mode(size % 4));
    require(shown != nullptr && cairo_image_surface_get_width(shown.get()) == 16);
    const unsigned char *pixels = cairo_image_surface_get_data(shown.get());
    for (int i = 0; i < 16 * 9; i++)
        require(pixels[4 * i + 3] == 255);
    return 0;
}
