#include "json.hpp"

#include "printable.hpp"
#include "utf8.hpp"

json parse_reply(std::string_view reply)
{
    return json::parse(valid_utf8(reply), nullptr, false);
}

static const json *find(const json &object, const char *key)
{
    if (!object.is_object())
        return nullptr;
    const auto found = object.find(key);
    return found != object.end() ? &*found : nullptr;
}

std::string member_text(const json &object, const char *key)
{
    const json *member = find(object, key);
    if (member == nullptr)
        return "";
    const auto *text = member->get_ptr<const std::string *>();
    return printable(text != nullptr ? *text : member->dump());
}

bool member_is_true(const json &object, const char *key)
{
    const json *member = find(object, key);
    return member != nullptr && member->is_boolean() && member->get<bool>();
}

long member_number(const json &object, const char *key)
{
    const json *member = find(object, key);
    return member != nullptr && member->is_number_integer() ? member->get<long>() : 0;
}

long first_number(const json &object, const char *key)
{
    const json *member = find(object, key);
    const bool has_number =
        member != nullptr && member->is_array() && !member->empty() && (*member)[0].is_number_integer();
    return has_number ? (*member)[0].get<long>() : -1;
}

json member_object(const json &object, const char *key)
{
    const json *member = find(object, key);
    return member != nullptr && member->is_object() ? *member : json::object();
}
