// A session with layer surfaces. Each belongs to a client of its own unless the test says otherwise.
#pragma once

#include "desktop.hpp"
#include "wayland_layer.hpp"
#include "windows/layer.hpp"

#include <algorithm>

namespace test
{

// The session has one output of 1280x704.
struct layers : desktop {
    void SetUp() override
    {
        desktop::SetUp();
        plug("A", 1280, 704);
    }

    void TearDown() override
    {
        surfaces.clear();
        desktop::TearDown();
    }

    // Creates a layer surface of a new client.
    layer_surface &create(const layer_traits &traits) { return create(connect(), traits); }

    layer_surface &create(client &owner, const layer_traits &traits)
    {
        layer_surface &l = surfaces.emplace_back(owner, traits);
        settle();
        return l;
    }

    // Creates a layer surface of a new client and waits until it is mapped.
    layer_surface &show(const layer_traits &traits)
    {
        layer_surface &l = create(traits);
        EVENTUALLY(find(l) != nullptr && find(l)->layer_surface->surface->mapped);
        return l;
    }

    vantore_layer_surface *find(const layer_surface &l)
    {
        for (auto &record : each<&vantore_layer_surface::link>(server.layer_surfaces)) {
            wl_resource *resource = record.layer_surface->surface->resource;
            if (wl_resource_get_client(resource) == server_side(l.owner()) &&
                wl_resource_get_id(resource) == l.surface_id())
                return &record;
        }
        return nullptr;
    }

    using desktop::box;
    using desktop::has_keyboard;

    // Returns the surface's place and size on the screen.
    wlr_box box(const layer_surface &l)
    {
        const vantore_layer_surface *record = find(l);
        if (record == nullptr)
            return {};
        const wlr_scene_node &node = record->scene->tree->node;
        const wlr_surface_state &shown = record->layer_surface->surface->current;
        return {.x = node.x, .y = node.y, .width = shown.width, .height = shown.height};
    }

    bool has_keyboard(const layer_surface &l)
    {
        const vantore_layer_surface *record = find(l);
        return record != nullptr && keyboard_focus() == record->layer_surface->surface;
    }

    wlr_box usable(const char *name = "A") { return output(name).usable; }

    std::vector<std::string> broken_rules()
    {
        std::vector<std::string> rules = server_check(server, active_windows);
        std::ranges::move(usable_check(server), std::back_inserter(rules));
        return rules;
    }

    std::list<layer_surface> surfaces;
};

} // namespace test
