#include "settings_apply.hpp"

#include "../server.hpp"
#include "../text.hpp"
#include "words.hpp"

#include <algorithm>
#include <concepts>

static constexpr size_t longest_output_name = sizeof(wp_override::name) - 1;

wp_override *wp_override_for(std::string_view name)
{
    name = name.substr(0, longest_output_name);
    const auto known = std::span{g_wp_overrides}.first(size_t(g_wp_override_count));
    const auto named = [&](const wp_override &output) { return text_equals(output.name, name); };
    if (const auto found = std::ranges::find_if(known, named); found != known.end())
        return &*found;
    if (known.size() == g_wp_overrides.size())
        return nullptr;
    wp_override &added = g_wp_overrides[size_t(g_wp_override_count++)];
    added = {};
    copy_text(added.name, name);
    return &added;
}

static void read_number(int &stored, const char *value)
{
    stored = cfg_int(value);
}

template <std::floating_point T> static void read_number(T &stored, const char *value)
{
    stored = T(cfg_fraction(value));
}

// Stores the value of one line in the setting of one row.
struct taking {
    const setting &row;
    const cfg_pair &line;
    vantore_server *server;

    void operator()(const flag_setting &kind) const { *kind.stored = cfg_bool(line.value); }
    template <class T> void operator()(const number_setting<T> &kind) const
    {
        read_number(*kind.stored, line.value);
    }
    void operator()(const text_setting &kind) const { copy_text(kind.stored, line.value); }
    template <class T> void operator()(const word_setting<T> &kind) const
    {
        *kind.stored = kind.read(line.value);
    }
    void operator()(const server_setting &kind) const
    {
        if (server != nullptr)
            server->*kind.stored = kind.read(line.value);
    }
    void operator()(const own_setting &kind) const { kind.take(line.value); }
    void operator()(const output_setting &kind) const
    {
        if (wp_override *output = wp_override_for(line.key + row.key.size() + 1))
            kind.take(*output, line.value);
    }
};

bool settings_take(setting_file file, const cfg_pair &line, vantore_server *server)
{
    const setting *row = setting_find(file, line.key);
    if (row != nullptr)
        std::visit(taking{*row, line, server}, row->kind);
    return row != nullptr;
}

// Resets what the server's record holds only if there is a server.
struct resetting {
    vantore_server *server;

    void operator()(const flag_setting &kind) const { *kind.stored = kind.initial; }
    template <class T> void operator()(const number_setting<T> &kind) const { *kind.stored = kind.initial; }
    void operator()(const text_setting &kind) const { copy_text(kind.stored, ""); }
    template <class T> void operator()(const word_setting<T> &kind) const { *kind.stored = kind.initial; }
    void operator()(const server_setting &kind) const
    {
        if (server != nullptr)
            server->*kind.stored = kind.initial;
    }
    void operator()(const own_setting &kind) const { kind.reset(); }
    void operator()(const output_setting &) const { g_wp_override_count = 0; }
};

void settings_reset(setting_file file)
{
    for (const setting &row : settings())
        if (row.file == file && row.load == on_load::resets)
            std::visit(resetting{nullptr}, row.kind);
}

void settings_begin(vantore_server &server)
{
    for (const setting &row : settings())
        if (row.load == on_load::keeps)
            std::visit(resetting{&server}, row.kind);
}

struct clamping {
    template <class T> void operator()(const number_setting<T> &kind) const
    {
        *kind.stored = std::clamp(*kind.stored, kind.least, kind.most);
    }
    template <class Kind> void operator()(const Kind &) const {}
};

void settings_clamp(setting_file file)
{
    for (const setting &row : settings())
        if (row.file == file)
            std::visit(clamping{}, row.kind);
}
