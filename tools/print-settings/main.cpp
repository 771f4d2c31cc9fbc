// Prints docs/settings.md from the compositor's own table.

#include "config/settings_table.hpp"

#include <cstdio>
#include <limits>
#include <string>

static constexpr const char *introduction = R"(# Settings

This page is printed by `tools/print-settings`; `tools/check-docs` tells when it is out of date.

The configuration directory is `vantore` in `$XDG_CONFIG_HOME`, or in `~/.config` if that is not set. Each load of
the configuration creates the missing ones of seven files there, with default texts: compositor.conf, input.conf,
workspaces.conf, rules.conf, keybinds.conf, autostart.conf and appearance.conf. Existing files are never changed.

A line is `KEY = VALUE`. A `#` begins a comment, except in appearance.conf, where it is an ordinary character. If
several lines have the same key, the last one counts. Keys and words are in lower case unless the tables say
otherwise. `true`, `1` and `yes` are true, and everything else is false. Text that is not a number counts as 0. A
number outside its limits becomes the nearest limit. A line has at most 511 bytes, or 1099 in appearance.conf; a
longer one is read as several lines.

A key that is in no file has its default. A key marked "stays" instead keeps its last value until the session ends.
Settings for something that does not exist yet are read and have no effect.
)";

static constexpr const char *workspaces = R"(
## workspaces.conf

    # NUMBER = NAME, KEY=VALUE, ...
    1 = Web, layout=tiling
    2 = Chat, output=DP-1, layout=tiling, tile_mode=grid

Numbers are 1 to 9. Several lines with the same number add up. A workspace without a line has the layout of
`default_layout`.

| key | values | default | what it does |
|---|---|---|---|
| `output` | text, 63 bytes | empty | the output on which the workspace first appears |
| `layout` | `floating`, `tiling` or `tile`, in any case | `default_layout` | how windows are placed |
| `tile_mode` | `master`, `grid`, `columns` or `monocle` | `master` | how tiles are placed |
)";

static constexpr const char *wallpapers = R"(
Up to 16 outputs can have a wallpaper of their own; further names are ignored.

A wallpaper is a PNG, JPEG, BMP, GIF or WebP file of at most 512 MiB, 134,217,728 pixels, and 32,767 pixels on a
side; of an animation, the first picture is shown. A file that can't be shown leaves the wallpaper as it is. A folder is
a slide show of the files in it whose names end with `.png`, `.jpg`, `.jpeg`, `.bmp`, `.webp` or `.gif`. The standard
picture is `/usr/share/vantore/wallpapers/Vantore.png`, unless `VANTORE_STANDARD_WALLPAPER` in the environment names
another one; where that can't be read, and with `none`, there is no wallpaper.
)";

static std::string number(double value)
{
    std::array<char, 32> text{};
    snprintf(text.data(), text.size(), "%g", value);
    return text.data();
}

struct columns {
    std::string values, initial;
};

static columns columns_of(const flag_setting &kind)
{
    return {"`true` or `false`", kind.initial ? "`true`" : "`false`"};
}

template <class T> static columns columns_of(const number_setting<T> &kind)
{
    const bool limited = kind.most < std::numeric_limits<T>::max();
    return {limited ? number(double(kind.least)) + " to " + number(double(kind.most)) : "a whole number",
            "`" + number(double(kind.initial)) + "`"};
}

static columns columns_of(const text_setting &kind)
{
    return {"text, " + std::to_string(kind.stored.size() - 1) + " bytes", "empty"};
}

template <class Kind> static columns columns_of(const Kind &kind)
{
    return {kind.text.values, kind.text.initial};
}

static void print_row(const setting &row)
{
    const auto [values, initial] = std::visit([](const auto &kind) { return columns_of(kind); }, row.kind);
    std::string key = "`" + std::string{row.key};
    if (std::holds_alternative<output_setting>(row.kind))
        key += ".NAME";
    key += "`";
    if (!row.alias.empty())
        key += ", `" + std::string{row.alias} + "`";
    printf("| %s | %s | %s%s | %s |\n", key.c_str(), values.c_str(), initial.c_str(),
           row.load == on_load::keeps ? ", stays" : "", row.does);
}

static void print_file(setting_file file, const char *name)
{
    printf("\n## %s\n\n| key | values | default | what it does |\n|---|---|---|---|\n", name);
    for (const setting &row : settings())
        if (row.file == file)
            print_row(row);
}

int main()
{
    fputs(introduction, stdout);
    print_file(setting_file::compositor, "compositor.conf");
    print_file(setting_file::input, "input.conf");
    fputs(workspaces, stdout);
    print_file(setting_file::appearance, "appearance.conf");
    fputs(wallpapers, stdout);
    print_file(setting_file::dock, "dock.conf");
    print_file(setting_file::panel, "panel.conf");
    return 0;
}
