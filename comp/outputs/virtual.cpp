#include "virtual.hpp"

#include "../handles.hpp"
#include "../server.hpp"

static constexpr int refresh_mhz = 60000;

static bool is_allowed(int width, int height)
{
    return width >= 320 && width <= 7680 && height >= 240 && height <= 4320;
}

void virtual_output_destroy(vantore_server &server)
{
    if (server.virtual_output != nullptr)
        wlr_output_destroy(server.virtual_output); // its record clears the field
    server.virtual_output = nullptr; // it may never have had a record
}

void virtual_output_create(vantore_server &server, int width, int height)
{
    if (server.headless == nullptr || !is_allowed(width, height))
        return;
    virtual_output_destroy(server);
    server.virtual_output = wlr_headless_add_output(server.headless, unsigned(width), unsigned(height));
    if (server.virtual_output == nullptr)
        return;
    output_state state;
    wlr_output_state_set_custom_mode(&state, width, height, refresh_mhz);
    wlr_output_commit_state(server.virtual_output, &state);
    wlr_log(WLR_INFO, "vantore-comp: virtual output %dx%d@60 created", width, height);
}
