// Reading replies. The library is told not to throw: a text that is no JSON gives a discarded value.
#pragma once

#include <nlohmann/json.hpp>

using json = nlohmann::json;

// Tolerates text with bytes that are no UTF-8.
json parse_reply(std::string_view reply);

// The member as it is printed: strings as they are, numbers and booleans as JSON; empty when there is none.
std::string member_text(const json &object, const char *key);
bool member_is_true(const json &object, const char *key);
// 0 when there is no such number, or no whole one.
long member_number(const json &object, const char *key);
// An empty object when there is none.
json member_object(const json &object, const char *key);
