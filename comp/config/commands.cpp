#include "commands.hpp"

#include "../text.hpp"
#include "files.hpp"

#include <array>
#include <string_view>

static constexpr const char *usual_terminals =
    "vantore-console || kitty || foot || x-terminal-emulator || xterm";

struct symbolic_command {
    std::string_view name;
    const char *line;
};

static constexpr symbolic_command symbolic_commands[]{
    {"$browser", "d=$(xdg-mime query default x-scheme-handler/https 2>/dev/null); "
                 "[ -n \"$d\" ] && gtk-launch \"${d%.desktop}\" || x-www-browser"},
    {"$files", "d=$(xdg-mime query default inode/directory 2>/dev/null); "
               "[ -n \"$d\" ] && gtk-launch \"${d%.desktop}\" || thunar"},
    {"$email", "d=$(xdg-mime query default x-scheme-handler/mailto 2>/dev/null); "
               "[ -n \"$d\" ] && gtk-launch \"${d%.desktop}\""},
};

using choice = std::array<char, 128>;

static choice read_terminal_choice()
{
    choice chosen{};
    std::array<char, 600> path{};
    config_path(path, "defaults.conf");
    const config_file file = config_open(path.data());
    std::array<char, 256> line{};
    while (file != nullptr && fgets(line.data(), int(line.size()), file.get()) != nullptr) {
        const auto pair = cfg_split(line.data());
        if (!pair || !std::string_view{pair->key}.starts_with("terminal"))
            continue;
        const std::string_view value = pair->value;
        if (value.size() < chosen.size())
            copy_text(chosen, value);
        break;
    }
    return chosen;
}

// Tells whether the shell takes the text as a program's name or path and as nothing more.
static bool is_plain(std::string_view text)
{
    static constexpr std::string_view allowed =
        "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789-./_";
    return !text.empty() && text.find_first_not_of(allowed) == std::string_view::npos;
}

const char *vnt_terminal_cmd()
{
    static std::array<char, 256> line;
    const choice chosen = read_terminal_choice();
    if (!is_plain(text_of(chosen)))
        return usual_terminals;
    snprintf(line.data(), line.size(), "%s || %s", chosen.data(), usual_terminals);
    return line.data();
}

const char *vnt_spawn_command(const char *spawn)
{
    const std::string_view name = spawn;
    if (name == "$terminal")
        return vnt_terminal_cmd();
    for (const symbolic_command &known : symbolic_commands)
        if (name == known.name)
            return known.line;
    return spawn;
}
