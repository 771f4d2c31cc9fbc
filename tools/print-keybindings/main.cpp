// Prints docs/keybindings.md from the compositor's own tables.

#include "config/keybinds.hpp"
#include "server.hpp"

#include <algorithm>
#include <cstdio>
#include <string>

static constexpr const char *introduction = R"(# Key bindings

This page is printed by `tools/print-keybindings`; `tools/check-docs` tells when it is out of date.

The bindings below exist without any configuration. `keybinds.conf` in the configuration directory
(`~/.config/vantore`) holds only what you want to change, one binding on each line:

    # CHORD = VERB ARGUMENT
    $mod+Shift+b = spawn firefox
    $mod+f = none

A line replaces the binding of exactly the same chord, or adds a new one. `none` or `unbind` removes a binding. A
`#` begins a comment. The table has room for 160 bindings. Bad lines are ignored.

A chord is a key and the modifiers that are held, joined by `+`:

- modifiers, in any case: `Super` (`Logo`, `Mod4`), `Shift`, `Ctrl` (`Control`), `Alt` (`Mod1`), and `$mod`, the
  modifier that compositor.conf sets, or Super if it sets none;
- keys: a letter or digit; in any case `Left`, `Right`, `Up`, `Down`, `Return` (`Enter`), `Space`, `Tab`, `Escape`
  (`Esc`); every other key by its exact XKB name, such as `comma`, `F1` or `XF86AudioMute`. Write a key as what it
  means without Shift: `Shift+1`, not `exclam`.

Four commands of `spawn` are placeholders that are looked up when the key is pressed: `$terminal` (the `terminal`
line of defaults.conf, then the usual terminals), and `$browser`, `$files` and `$email` (the desktop's default
programs).

Three chords come before all bindings and cannot be changed. `$mod+Ctrl+Shift` with `r` reloads the configuration,
with `Return` it starts a terminal, and with `Escape` it ends the session.

A client that asks for all shortcuts gets them while it has the keyboard, except `spawn` bindings of vantore-shot
and vantore-replay. A window that fills its output gets every chord without `$mod`, except media keys, `cycle` and
`Ctrl+Shift+Escape`.
)";

static const char *argument_text(verb_argument kind)
{
    switch (kind) {
    case verb_argument::none:
        return "";
    case verb_argument::number:
        return " NUMBER";
    case verb_argument::direction:
        return " left, right, up or down";
    case verb_argument::output_step:
        return " prev or next";
    case verb_argument::command:
        return " COMMAND";
    }
    return "";
}

static void print_verbs()
{
    puts("\n## Verbs\n\n| verb | argument | what it does |\n|---|---|---|");
    for (const keybind_verb &verb : keybind_verbs()) {
        std::string names;
        for (const char *name : verb.names)
            if (name != nullptr)
                names += (names.empty() ? "`" : ", `") + std::string{name} + "`";
        printf("| %s |%s | %s |\n", names.c_str(), argument_text(verb.argument), verb.does);
    }
}

static std::string chord_text(const vnt_bind &bind)
{
    std::string text;
    if ((bind.mods & WLR_MODIFIER_LOGO) != 0)
        text += "$mod+";
    if ((bind.mods & WLR_MODIFIER_CTRL) != 0)
        text += "Ctrl+";
    if ((bind.mods & WLR_MODIFIER_ALT) != 0)
        text += "Alt+";
    if ((bind.mods & WLR_MODIFIER_SHIFT) != 0)
        text += "Shift+";
    std::array<char, 64> key{};
    xkb_keysym_get_name(bind.keysym, key.data(), key.size());
    return text + key.data();
}

static std::string argument_of(const vnt_bind &bind, verb_argument kind)
{
    static constexpr std::array directions{" left", " right", " up", " down"};
    switch (kind) {
    case verb_argument::none:
        return "";
    case verb_argument::number:
        return " " + std::to_string(bind.arg);
    case verb_argument::direction:
        return directions[size_t(bind.arg)];
    case verb_argument::output_step:
        return bind.arg < 0 ? " prev" : " next";
    case verb_argument::command:
        return std::string{" "} + bind.spawn.data();
    }
    return "";
}

static std::string action_text(const vnt_bind &bind)
{
    const auto verbs = keybind_verbs();
    const auto verb = std::ranges::find(verbs, bind.act, &keybind_verb::act);
    return verb->names[0] + argument_of(bind, verb->argument);
}

// The logo key is printed as $mod. No default binding uses the logo key for anything else.
static void print_defaults()
{
    static const vantore_server server;
    install_default_binds(server);
    puts("\n## Defaults\n\n| chord | action |\n|---|---|");
    for (const vnt_bind &bind : std::span{g_binds.data(), size_t(g_bind_count)})
        printf("| `%s` | `%s` |\n", chord_text(bind).c_str(), action_text(bind).c_str());
}

int main()
{
    fputs(introduction, stdout);
    print_verbs();
    print_defaults();
    return 0;
}
