#include "picture.hpp"

#include "places.hpp"

#include <algorithm>
#include <cstdlib>
#include <png.h>
#include <string_view>
#include <system_error>

namespace test
{

static constexpr uint32_t differs = 0xffffffff;
static constexpr uint32_t same = 0xff202020;

uint32_t image::at(int x, int y) const
{
    if (x < 0 || y < 0 || x >= width || y >= height)
        return 0;
    return argb[size_t(y) * size_t(width) + size_t(x)];
}

image image::load(const std::filesystem::path &path)
{
    png_image png{};
    png.version = PNG_IMAGE_VERSION;
    if (png_image_begin_read_from_file(&png, path.c_str()) == 0)
        return {};
    png.format = PNG_FORMAT_BGRA; // ARGB as little-endian words
    image result{.width = int(png.width), .height = int(png.height), .argb = {}};
    result.argb.resize(size_t{png.width} * png.height);
    if (png_image_finish_read(&png, nullptr, result.argb.data(), 0, nullptr) == 0)
        return {};
    return result;
}

bool image::save(const std::filesystem::path &path) const
{
    std::error_code ignored; // if the directory can't be made, writing the file fails
    std::filesystem::create_directories(path.parent_path(), ignored);
    png_image png{};
    png.version = PNG_IMAGE_VERSION;
    png.width = uint32_t(width);
    png.height = uint32_t(height);
    png.format = PNG_FORMAT_BGRA;
    return png_image_write_to_file(&png, path.c_str(), 0, argb.data(), 0, nullptr) != 0;
}

static int largest_channel_difference(uint32_t a, uint32_t b)
{
    int largest = 0;
    for (const int shift : {0, 8, 16, 24})
        largest = std::max(largest, std::abs(int(a >> shift & 0xff) - int(b >> shift & 0xff)));
    return largest;
}

difference compare(const image &actual, const image &expected, int tolerance)
{
    difference result;
    result.picture = {.width = actual.width, .height = actual.height, .argb = {}};
    const bool comparable = actual.width == expected.width && actual.height == expected.height;
    for (size_t i = 0; i < actual.argb.size(); i++) {
        const int distance = comparable ? largest_channel_difference(actual.argb[i], expected.argb[i]) : 255;
        result.largest = std::max(result.largest, distance);
        result.pixels += distance > tolerance ? 1 : 0;
        result.picture.argb.push_back(distance > tolerance ? differs : same);
    }
    if (!comparable)
        result.pixels = std::max<size_t>(result.pixels, 1);
    return result;
}

static bool golden_update_wanted()
{
    const char *wanted = getenv("VANTORE_UPDATE_GOLDEN");
    return wanted != nullptr && std::string_view{wanted} == "1";
}

testing::AssertionResult matches_golden(const image &actual, const std::string &name, int tolerance)
{
    const std::filesystem::path golden = std::filesystem::path{data_directory} / "golden" / (name + ".png");
    if (golden_update_wanted())
        return actual.save(golden) ? testing::AssertionSuccess()
                                   : testing::AssertionFailure() << "can't write " << golden;
    const difference found = compare(actual, image::load(golden), tolerance);
    if (found.pixels == 0)
        return testing::AssertionSuccess();
    const char *directory = getenv("VANTORE_TEST_OUTPUT");
    const std::filesystem::path output = directory != nullptr ? directory : ".";
    (void)actual.save(output / (name + ".actual.png"));
    (void)found.picture.save(output / (name + ".diff.png"));
    return testing::AssertionFailure()
           << found.pixels << " pixels differ from " << golden << " by more than " << tolerance
           << " (at most " << found.largest << "); see " << std::filesystem::absolute(output) << "/" << name
           << ".{actual,diff}.png";
}

} // namespace test
