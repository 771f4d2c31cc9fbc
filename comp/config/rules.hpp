// rules.conf: how windows of an app id are to be treated. What it says is data here; windows/app_rules
// carries it into a window.
#pragma once

#include "../place.hpp"

#include <array>
#include <string_view>

struct app_rule {
    std::array<char, 128> app_id{}; // a pattern
    int ws_num = 0; // any number; 0 for none
    int floating = -1; // 1 floats, 0 tiles, -1 as it was
    bool fs = false; // fullscreen
    bool noshadow = false, noround = false, skiptaskbar = false, follow = false;
    vantore_place place = PLACE_NONE;
};

inline std::array<app_rule, 64> g_rules; // in the file's order
inline int g_rule_count;

// Appends to g_rules until it is full. Workspaces' names must be known before. Nothing is a bad line here.
void config_parse_rules(const char *path);

// Equal, or with a prefix where the pattern ends in '*', which has no meaning anywhere else.
bool rule_matches(std::string_view rule_app, std::string_view app);

// The one rule that counts for an app id, or null. Null and empty ids, which match nothing, are allowed.
const app_rule *rule_for(const char *app);

// The workspace that workspaces.conf gives exactly this name; 0 for none and for the empty name.
int ws_num_by_name(std::string_view name);
