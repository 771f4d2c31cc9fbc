// Reads rules.conf, which says how to treat the windows of an app id. The rules are only data here;
// windows/app_rules applies them to windows.
#pragma once

#include "../place.hpp"

#include <array>
#include <string_view>

struct app_rule {
    std::array<char, 128> app_id{}; // a pattern
    int ws_num = 0; // any number; 0 for none
    int floating = -1; // 1 floats, 0 tiles, -1 changes nothing
    bool fs = false; // fullscreen
    bool noshadow = false, noround = false, skiptaskbar = false, follow = false;
    vantore_place place = PLACE_NONE;
};

inline std::array<app_rule, 64> g_rules; // in the file's order
inline int g_rule_count;

// Appends rules to g_rules until it is full. The names of workspaces must have been read before. No line
// counts as bad.
void config_parse_rules(const char *path);

// Compares the texts. If the pattern ends in '*', it matches as a prefix. A '*' anywhere else has no special
// meaning.
bool rule_matches(std::string_view rule_app, std::string_view app);

// Returns the first rule that matches an app id, which is the only one that counts, or null. A null or empty
// id is allowed and matches nothing.
const app_rule *rule_for(const char *app);

// Returns the workspace to which workspaces.conf gives exactly this name, or 0 if there is none or the name
// is empty.
int ws_num_by_name(std::string_view name);
