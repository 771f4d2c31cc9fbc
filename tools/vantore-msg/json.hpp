// Reads replies. The library is told not to throw, so text that is not JSON gives a discarded value.
#pragma once

#include <nlohmann/json.hpp>

using json = nlohmann::json;

// Accepts text with bytes that are not UTF-8.
json parse_reply(std::string_view reply);

// The member as text for a table: a string as it is, a number or boolean as JSON, nothing if it is missing.
std::string member_text(const json &object, const char *key);
bool member_is_true(const json &object, const char *key);
// 0 if the member is missing or not a whole number.
long member_number(const json &object, const char *key);
// The first number of an array; -1 if the member is no array that begins with a whole number.
long first_number(const json &object, const char *key);
// An empty object if the member is missing.
json member_object(const json &object, const char *key);
