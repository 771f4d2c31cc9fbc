#include "rules.hpp"

#include "../text.hpp"
#include "files.hpp"
#include "settings.hpp"

#include <algorithm>
#include <cstring>

static std::span<const app_rule> rules()
{
    return std::span{g_rules}.first(size_t(g_rule_count));
}

bool rule_matches(std::string_view rule_app, std::string_view app)
{
    if (!rule_app.ends_with('*'))
        return rule_app == app;
    rule_app.remove_suffix(1);
    return app.starts_with(rule_app);
}

const app_rule *rule_for(const char *app)
{
    if (app == nullptr || *app == '\0')
        return nullptr;
    const auto matches = [app](const app_rule &rule) { return rule_matches(text_of(rule.app_id), app); };
    const auto found = std::ranges::find_if(rules(), matches);
    return found != rules().end() ? &*found : nullptr;
}

int ws_num_by_name(std::string_view name)
{
    if (name.empty())
        return 0;
    const auto named = std::span{g_ws_cfg}.subspan(1);
    const auto found =
        std::ranges::find_if(named, [name](const ws_cfg &ws) { return text_equals(ws.name, name); });
    return found != named.end() ? int(found - named.begin()) + 1 : 0;
}

static int workspace_from(const char *value)
{
    const int num = cfg_int(value);
    return num != 0 || *value == '0' ? num : ws_num_by_name(value);
}

struct floating_word {
    std::string_view name;
    int floating;
};

static constexpr floating_word floating_words[]{{"float", 1}, {"tile", 0}};

struct flag_word {
    std::string_view name;
    bool app_rule::*flag;
};

static constexpr flag_word flag_words[]{
    {"fullscreen", &app_rule::fs},   {"noshadow", &app_rule::noshadow},
    {"noround", &app_rule::noround}, {"skiptaskbar", &app_rule::skiptaskbar},
    {"follow", &app_rule::follow},
};

struct place_word {
    std::string_view name;
    vantore_place place;
};

static constexpr place_word place_words[]{
    {"top-right", PLACE_TOP_RIGHT},     {"top-left", PLACE_TOP_LEFT}, {"bottom-right", PLACE_BOTTOM_RIGHT},
    {"bottom-left", PLACE_BOTTOM_LEFT}, {"center", PLACE_CENTER},
};

static void take_place(app_rule &rule, std::string_view value)
{
    const auto *found = std::ranges::find(place_words, value, &place_word::name);
    if (found != std::end(place_words))
        rule.place = found->place;
}

static void take_pair(app_rule &rule, const cfg_pair &action)
{
    const std::string_view key{action.key};
    if (key == "workspace" || key == "ws")
        rule.ws_num = workspace_from(action.value);
    else if (key == "place")
        take_place(rule, action.value);
}

static void take_word(app_rule &rule, std::string_view word)
{
    for (const floating_word &known : floating_words)
        if (word == known.name)
            rule.floating = known.floating;
    for (const flag_word &known : flag_words)
        if (word == known.name)
            rule.*known.flag = true;
}

// Applies the actions to the rule and cuts their text into pieces.
static void take_actions(app_rule &rule, char *actions)
{
    char *rest = nullptr;
    for (char *token = strtok_r(actions, ",", &rest); token != nullptr;
         token = strtok_r(nullptr, ",", &rest)) {
        if (const auto pair = cfg_split(token))
            take_pair(rule, *pair);
        else
            take_word(rule, cfg_trim(token));
    }
}

static void take_line(char *line)
{
    char *arrow = strstr(line, "->");
    if (arrow == nullptr)
        return;
    *arrow = '\0';
    const std::string_view pattern{cfg_trim(line)};
    if (pattern.empty())
        return;
    app_rule &rule = g_rules[size_t(g_rule_count++)];
    rule = {};
    copy_text(rule.app_id, pattern);
    take_actions(rule, arrow + 2);
}

void config_parse_rules(const char *path)
{
    const config_file file = config_open(path);
    std::array<char, 512> line{};
    while (g_rule_count < int(g_rules.size()) && file != nullptr &&
           fgets(line.data(), int(line.size()), file.get()) != nullptr)
        take_line(cfg_without_comment(line.data()));
}
