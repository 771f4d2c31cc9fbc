#include "queries.hpp"

#include "../layout.hpp"
#include "../outputs/lookup.hpp"
#include "../outputs/output.hpp"
#include "../server.hpp"
#include "../strbuf.hpp"
#include "../text.hpp"
#include "../windows/toplevel.hpp"
#include "../workspaces/workspace.hpp"

#include <string>

static const char *word(bool value)
{
    return value ? "true" : "false";
}

static const char *name_of(const vantore_output *o)
{
    return o != nullptr ? o->wlr_output->name : nullptr;
}

// Appends the text and then a JSON string. Use it for members of objects: sb_key(sb, ",\"name\":", name).
static void sb_key(strbuf &sb, std::string_view key, const char *value)
{
    sb_append(sb, key.data(), key.size());
    sb_jstr(sb, value);
}

// Appends a JSON array. It calls `append` with each record that `wanted` accepts.
template <auto Link, class Wanted, class Append>
static void sb_array(strbuf &sb, wl_list &list, Wanted wanted, Append append)
{
    const char *before = "[";
    for (auto &record : each<Link>(list)) {
        if (!wanted(record))
            continue;
        sb_append(sb, before, 1);
        append(record);
        before = ",";
    }
    sb_appendf(sb, "%s", *before == '[' ? "[]" : "]");
}

static constexpr auto all = [](const auto &) { return true; };

static bool is_worth_listing(const vantore_workspace &ws)
{
    return ws.output != nullptr || wl_list_empty(&ws.toplevels) == 0 ||
           !text_equals(ws.name, std::to_string(ws.num));
}

static void sb_workspace(strbuf &sb, const vantore_workspace &ws, const vantore_output *current)
{
    const bool tiling = ws.layout == VANTORE_LAYOUT_TILING;
    const bool focused = current != nullptr && current->current_ws == &ws;
    sb_appendf(sb, R"({"num":%d,"name":)", ws.num);
    sb_jstr(sb, ws.name.data());
    sb_appendf(sb, R"(,"focused":%s,"visible":%s,"tiling":%s,"tile_mode":"%s")", word(focused),
               word(ws.output != nullptr), word(tiling), tile_mode_name(ws.tile_mode));
    sb_key(sb, R"(,"output":)", name_of(ws.output));
    sb_key(sb, R"(,"pref_output":)", ws.pref_output.data());
    sb_key(sb, R"(,"layout":)", tiling ? "tiling" : "floating");
    sb_appendf(sb, R"(,"window_count":%d})", wl_list_length(&ws.toplevels));
}

void ipc_json_workspaces(vantore_server &server, strbuf &sb)
{
    const vantore_output *current = current_output(server);
    sb_array<&vantore_workspace::link>(sb, server.workspaces, is_worth_listing,
                                       [&](const auto &ws) { sb_workspace(sb, ws, current); });
}

static void sb_window(strbuf &sb, const vantore_toplevel &t, const wlr_surface *focused)
{
    const vantore_workspace *ws = t.workspace;
    const wlr_box box = toplevel_box(t);
    sb_appendf(sb, R"({"id":%u,"skip":%s)", t.id, word(t.skip_taskbar));
    sb_key(sb, R"(,"app_id":)", tl_app_id(t));
    sb_key(sb, R"(,"title":)", tl_title(t));
    sb_key(sb, R"(,"output":)", ws != nullptr ? name_of(ws->output) : nullptr);
    sb_appendf(sb,
               R"(,"ws":%d,"focused":%s,"floating":%s,"fullscreen":%s,"ssd":%s,"urgent":%s,"minimized":%s)"
               R"(,"rect":{"x":%d,"y":%d,"width":%d,"height":%d}})",
               ws != nullptr ? ws->num : 0, word(focused != nullptr && focused == tl_surface(t)),
               word(t.floating), word(t.fullscreen), word(t.ssd), word(t.urgent), word(t.minimized), box.x,
               box.y, box.width, box.height);
}

void ipc_json_windows(vantore_server &server, strbuf &sb)
{
    const wlr_surface *focused = server.seat->keyboard_state.focused_surface;
    sb_array<&vantore_toplevel::link>(sb, server.toplevels, all,
                                      [&](const auto &t) { sb_window(sb, t, focused); });
}

static const char *transform_name(wl_output_transform transform)
{
    switch (transform) {
    case WL_OUTPUT_TRANSFORM_NORMAL:
        return "normal";
    case WL_OUTPUT_TRANSFORM_90:
        return "90";
    case WL_OUTPUT_TRANSFORM_180:
        return "180";
    case WL_OUTPUT_TRANSFORM_270:
        return "270";
    case WL_OUTPUT_TRANSFORM_FLIPPED:
        return "flipped";
    case WL_OUTPUT_TRANSFORM_FLIPPED_90:
        return "flipped-90";
    case WL_OUTPUT_TRANSFORM_FLIPPED_180:
        return "flipped-180";
    case WL_OUTPUT_TRANSFORM_FLIPPED_270:
        return "flipped-270";
    }
    return "normal";
}

static void sb_mode(strbuf &sb, int width, int height, int refresh_mhz)
{
    sb_appendf(sb, R"({"width":%d,"height":%d,"refresh":%d})", width, height, refresh_mhz);
}

static void sb_modes(strbuf &sb, wl_list &modes)
{
    sb_array<&wlr_output_mode::link>(
        sb, modes, all, [&](const wlr_output_mode &m) { sb_mode(sb, m.width, m.height, m.refresh); });
}

static void sb_output(strbuf &sb, const vantore_output &o, const vantore_output *current)
{
    struct wlr_output &out = *o.wlr_output;
    const wlr_box box = output_layout_box(o);
    sb_appendf(sb, R"({"focused":%s)", word(&o == current));
    sb_key(sb, R"(,"name":)", out.name);
    sb_key(sb, R"(,"make":)", out.make);
    sb_key(sb, R"(,"model":)", out.model);
    sb_key(sb, R"(,"serial":)", out.serial);
    sb_appendf(sb, R"(,"active":%s,"scale":%f)", word(out.enabled), double(out.scale));
    sb_key(sb, R"(,"transform":)", transform_name(out.transform));
    sb_appendf(sb, R"(,"rect":{"x":%d,"y":%d,"width":%d,"height":%d},"current_mode":)", box.x, box.y,
               box.width, box.height);
    sb_mode(sb, out.width, out.height, out.refresh);
    sb_appendf(sb, R"(,"mirror":false,"modes":)"); // nothing is mirrored
    sb_modes(sb, out.modes);
    sb_appendf(sb, "}");
}

void ipc_json_outputs(vantore_server &server, strbuf &sb)
{
    const vantore_output *current = current_output(server);
    sb_array<&vantore_output::link>(sb, server.outputs, all,
                                    [&](const auto &o) { sb_output(sb, o, current); });
}
