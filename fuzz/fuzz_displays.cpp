// Reads any bytes as a user's displays.conf, chooses a profile and anchors it.

#include "fuzzing.hpp"
#include "outputs/display_profiles.hpp"
#include "outputs/output_steps.hpp"
#include "text.hpp"

#include <algorithm>

static void check(const output_step &step)
{
    if (const auto *position = std::get_if<output_position>(&step))
        require(std::abs(position->x) <= 1'000'000 && std::abs(position->y) <= 1'000'000);
    if (const auto *scale = std::get_if<output_scale>(&step))
        require(scale->factor >= 0.1 && scale->factor <= 20);
    if (const auto *mode = std::get_if<output_mode_wish>(&step))
        require(mode->width > 0 && mode->height > 0 && mode->refresh_hz >= 0);
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const std::string_view text{reinterpret_cast<const char *>(data), size};
    const std::vector<display_profile> profiles = display_profiles_in(text);
    require(profiles.size() <= size_t(std::count(data, data + size, '[')));
    const std::vector<connected_display> connected{{.name = "A", .id = "a~b~c"}, {.name = "B", .id = "B"}};
    auto chosen = display_profile_for(profiles, connected);
    if (!chosen)
        return 0;
    require(chosen->enabled > 0 && !chosen->profile.lines.empty() && chosen->profile.lines.size() <= 64);
    anchor_to_origin(chosen->profile);
    require(!anchor_to_origin(chosen->profile).has_value());
    for (const std::string_view line : chosen->profile.lines)
        for (const output_step &step : output_steps_in(line))
            check(step);
    return 0;
}
