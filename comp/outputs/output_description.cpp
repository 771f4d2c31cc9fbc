#include "output_description.hpp"

#include "../listening.hpp"
#include "lookup.hpp"
#include "output.hpp"

static std::string string_of(const char *text)
{
    return text != nullptr ? text : "";
}

output_description describe_output(const vantore_output &o)
{
    struct wlr_output &out = *o.wlr_output;
    output_description d{
        .name = string_of(out.name),
        .make = string_of(out.make),
        .model = string_of(out.model),
        .serial = string_of(out.serial),
        .enabled = out.enabled,
        .scale = out.scale,
        .transform = out.transform,
        .box = output_layout_box(o),
        .current = {.width = out.width, .height = out.height, .refresh_mhz = out.refresh},
    };
    for (const auto &m : each<&wlr_output_mode::link>(out.modes))
        d.modes.push_back({.width = m.width, .height = m.height, .refresh_mhz = m.refresh});
    if (o.mirror.mir_on)
        d.mirror = o.mirror.source;
    return d;
}
