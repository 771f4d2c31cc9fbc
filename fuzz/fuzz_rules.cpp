// Reads any bytes as a user's rules.conf, and matches the rules with any app id.

#include "config/files.hpp"
#include "config/rules.hpp"
#include "config/settings.hpp"
#include "fuzzing.hpp"
#include "text.hpp"

#include <algorithm>
#include <cstring>
#include <string>

static void check(const app_rule &rule)
{
    require(memchr(rule.app_id.data(), '\0', rule.app_id.size()) != nullptr);
    require(rule.app_id[0] != '\0');
    require(rule.floating >= -1 && rule.floating <= 1);
    require(rule.place >= PLACE_NONE && rule.place <= PLACE_CENTER);
    const std::string_view pattern = text_of(rule.app_id);
    require(rule_matches(pattern, pattern));
    require(pattern.ends_with('*') || !rule_matches(pattern, std::string{pattern} + "x"));
    const app_rule *first = rule_for(rule.app_id.data());
    require(first != nullptr && first <= &rule);
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    copy_text(g_ws_cfg[1].name, "WWW");
    g_rule_count = 0;
    config_parse_rules(write_file(data, size));
    require(g_rule_count >= 0 && g_rule_count <= int(g_rules.size()));
    for (const app_rule &rule : std::span{g_rules}.first(size_t(g_rule_count)))
        check(rule);
    require(g_rule_count <= int(std::count(data, data + size, '>')));
    require(g_config_errors == 0);
    return 0;
}
