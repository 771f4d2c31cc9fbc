#include "queries.hpp"

#include "../layout.hpp"
#include "../outputs/absent.hpp"
#include "../outputs/lookup.hpp"
#include "../outputs/output.hpp"
#include "../server.hpp"
#include "../strbuf.hpp"
#include "../text.hpp"
#include "../windows/toplevel.hpp"
#include "../workspaces/workspace.hpp"

#include <ranges>
#include <string>

static const char *word(bool value)
{
    return value ? "true" : "false";
}

// Returns the name of the output that shows the workspace, or did so when the session was last in front. Null
// for a hidden workspace.
static const char *output_name_of(const vantore_workspace &ws)
{
    if (ws.output != nullptr)
        return ws.output->wlr_output->name;
    const remembered_output *absent = absent_output_of(ws);
    return absent != nullptr ? absent->description.name.c_str() : nullptr;
}

// Returns the number of the workspace that the pointer's output shows, or 0.
static int current_workspace(vantore_server &server)
{
    if (const remembered_output *absent = absent_output_under_pointer(server))
        return absent->workspace;
    const vantore_output *o = current_output(server);
    return o != nullptr && o->current_ws != nullptr ? o->current_ws->num : 0;
}

// Appends the text and then a JSON string. Use it for members of objects: sb_key(sb, ",\"name\":", name).
static void sb_key(strbuf &sb, std::string_view key, const char *value)
{
    sb_append(sb, key.data(), key.size());
    sb_jstr(sb, value);
}

// Appends a JSON array. It calls `append` with each record of a range that `wanted` accepts.
template <class Range, class Wanted, class Append>
static void sb_array(strbuf &sb, Range &&records, Wanted wanted, Append append)
{
    const char *before = "[";
    for (auto &record : records) {
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
    return output_name_of(ws) != nullptr || wl_list_empty(&ws.toplevels) == 0 ||
           !text_equals(ws.name, std::to_string(ws.num));
}

static void sb_workspace(strbuf &sb, const vantore_workspace &ws, int current)
{
    const bool tiling = ws.layout == VANTORE_LAYOUT_TILING;
    const char *output = output_name_of(ws);
    sb_appendf(sb, R"({"num":%d,"name":)", ws.num);
    sb_jstr(sb, ws.name.data());
    sb_appendf(sb, R"(,"focused":%s,"visible":%s,"tiling":%s,"tile_mode":"%s")", word(ws.num == current),
               word(output != nullptr), word(tiling), tile_mode_name(ws.tile_mode));
    sb_key(sb, R"(,"output":)", output);
    sb_key(sb, R"(,"pref_output":)", ws.pref_output.data());
    sb_key(sb, R"(,"layout":)", tiling ? "tiling" : "floating");
    sb_appendf(sb, R"(,"window_count":%d})", wl_list_length(&ws.toplevels));
}

void ipc_json_workspaces(vantore_server &server, strbuf &sb)
{
    const int current = current_workspace(server);
    sb_array(sb, each<&vantore_workspace::link>(server.workspaces), is_worth_listing,
             [&](const auto &ws) { sb_workspace(sb, ws, current); });
}

static void sb_window(strbuf &sb, const vantore_toplevel &t, const wlr_surface *focused)
{
    const vantore_workspace *ws = t.workspace;
    const wlr_box box = toplevel_box(t);
    sb_appendf(sb, R"({"id":%u,"skip":%s)", t.id, word(t.skip_taskbar));
    sb_key(sb, R"(,"app_id":)", tl_app_id(t));
    sb_key(sb, R"(,"title":)", tl_title(t));
    sb_key(sb, R"(,"output":)", ws != nullptr ? output_name_of(*ws) : nullptr);
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
    sb_array(sb, each<&vantore_toplevel::link>(server.toplevels), all,
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

static void sb_mode(strbuf &sb, const output_description::mode &m)
{
    sb_appendf(sb, R"({"width":%d,"height":%d,"refresh":%d})", m.width, m.height, m.refresh_mhz);
}

static void sb_mirror(strbuf &sb, const std::optional<mirror_source> &source)
{
    if (!source) {
        sb_appendf(sb, R"(,"mirror":false)");
    } else if (source->mir_is_output) {
        sb_key(sb, R"(,"mirror":{"kind":"screen","output":)", source->mir_src_out.c_str());
        sb_appendf(sb, "}");
    } else {
        sb_appendf(sb, R"(,"mirror":{"kind":"window","window":%u})", source->mir_src_wid);
    }
}

static void sb_output(strbuf &sb, const output_description &o, bool focused)
{
    sb_appendf(sb, R"({"focused":%s)", word(focused));
    sb_key(sb, R"(,"name":)", o.name.c_str());
    sb_key(sb, R"(,"make":)", o.make.c_str());
    sb_key(sb, R"(,"model":)", o.model.c_str());
    sb_key(sb, R"(,"serial":)", o.serial.c_str());
    sb_appendf(sb, R"(,"active":%s,"scale":%f)", word(o.enabled), double(o.scale));
    sb_key(sb, R"(,"transform":)", transform_name(o.transform));
    sb_appendf(sb, R"(,"rect":{"x":%d,"y":%d,"width":%d,"height":%d},"current_mode":)", o.box.x, o.box.y,
               o.box.width, o.box.height);
    sb_mode(sb, o.current);
    sb_mirror(sb, o.mirror);
    sb_appendf(sb, R"(,"modes":)");
    sb_array(sb, o.modes, all, [&](const auto &m) { sb_mode(sb, m); });
    sb_appendf(sb, "}");
}

// Absent outputs follow the others.
static std::vector<output_description> outputs_to_list(vantore_server &server)
{
    std::vector<output_description> outputs;
    for (const auto &o : each<&vantore_output::link>(server.outputs))
        outputs.push_back(describe_output(o));
    for (const remembered_output &remembered : std::views::reverse(server.absence.outputs))
        if (remembered.absent)
            outputs.push_back(remembered.description);
    return outputs;
}

static std::string current_output_name(vantore_server &server)
{
    if (const remembered_output *absent = absent_output_under_pointer(server))
        return absent->description.name;
    const vantore_output *o = current_output(server);
    return o != nullptr && o->wlr_output->name != nullptr ? o->wlr_output->name : "";
}

void ipc_json_outputs(vantore_server &server, strbuf &sb)
{
    const std::string current = current_output_name(server);
    sb_array(sb, outputs_to_list(server), all, [&](const auto &o) { sb_output(sb, o, o.name == current); });
}
