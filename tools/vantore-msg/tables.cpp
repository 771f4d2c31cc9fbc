#include "tables.hpp"

#include "json.hpp"
#include "printable.hpp"

#include <format>

using cells = std::vector<std::string>;

struct flag {
    const char *key;
    const char *word;
};

// The words of all flags that are set, or "-".
static std::string flags_of(const json &object, std::initializer_list<flag> flags)
{
    std::string words;
    for (const flag &f : flags)
        if (member_is_true(object, f.key))
            words += (words.empty() ? "" : ",") + std::string{f.word};
    return words.empty() ? "-" : words;
}

static std::string or_dash(const std::string &text)
{
    return text.empty() ? "-" : text;
}

static std::string size_and_place(const json &rect)
{
    return std::format("{}x{}+{}+{}", member_number(rect, "width"), member_number(rect, "height"),
                       member_number(rect, "x"), member_number(rect, "y"));
}

static cells workspace_row(const json &ws)
{
    const std::string layout = member_is_true(ws, "tiling") ? member_text(ws, "tile_mode") : "floating";
    return {member_text(ws, "num"),
            or_dash(member_text(ws, "name")),
            or_dash(member_text(ws, "output")),
            layout,
            member_text(ws, "window_count"),
            flags_of(ws, {{"focused", "focused"}, {"visible", "visible"}})};
}

static cells window_row(const json &w)
{
    return {member_text(w, "id"),
            member_text(w, "ws"),
            or_dash(member_text(w, "output")),
            size_and_place(member_object(w, "rect")),
            flags_of(w, {{"focused", "focused"},
                         {"floating", "floating"},
                         {"fullscreen", "fullscreen"},
                         {"minimized", "minimized"},
                         {"urgent", "urgent"}}),
            or_dash(member_text(w, "app_id")),
            member_text(w, "title")};
}

static std::string mode_of(const json &output)
{
    const json mode = member_object(output, "current_mode");
    return std::format("{}x{}@{:.3f}", member_number(mode, "width"), member_number(mode, "height"),
                       double(member_number(mode, "refresh")) / 1000);
}

static std::string mirrored(const json &output)
{
    const json mirror = member_object(output, "mirror");
    const std::string source = member_text(mirror, "output") + member_text(mirror, "window");
    return source.empty() ? "-" : source;
}

static cells output_row(const json &o)
{
    return {member_text(o, "name"),
            mode_of(o),
            size_and_place(member_object(o, "rect")),
            member_text(o, "scale"),
            member_text(o, "transform"),
            mirrored(o),
            flags_of(o, {{"focused", "focused"}, {"active", "on"}}),
            member_text(o, "make") + " " + member_text(o, "model")};
}

static std::optional<std::string> table(std::string_view reply, cells head, cells (*row)(const json &))
{
    const json list = parse_reply(reply);
    if (!list.is_array())
        return std::nullopt;
    std::vector<cells> rows{std::move(head)};
    for (const json &entry : list)
        rows.push_back(row(entry));
    return aligned(rows);
}

std::optional<std::string> workspaces_table(std::string_view reply)
{
    return table(reply, {"NUM", "NAME", "OUTPUT", "LAYOUT", "WINDOWS", "STATE"}, workspace_row);
}

std::optional<std::string> windows_table(std::string_view reply)
{
    return table(reply, {"ID", "WS", "OUTPUT", "GEOMETRY", "STATE", "APP", "TITLE"}, window_row);
}

std::optional<std::string> outputs_table(std::string_view reply)
{
    return table(reply, {"NAME", "MODE", "GEOMETRY", "SCALE", "TRANSFORM", "MIRRORS", "STATE", "MONITOR"},
                 output_row);
}
