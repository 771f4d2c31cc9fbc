#include "output_token.hpp"

#include "../server.hpp"
#include "lookup.hpp"
#include "output.hpp"

#include <algorithm>

static bool is_letter_or_digit(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
}

std::string output_token_id(const struct wlr_output &output)
{
    const auto text = [](const char *part) { return std::string{part != nullptr ? part : ""}; };
    std::string id = text(output.make) + "~" + text(output.model) + "~" + text(output.serial);
    std::ranges::replace_if(id, [](char c) { return !is_letter_or_digit(c) && c != '~'; }, '_');
    return std::ranges::any_of(id, is_letter_or_digit) ? id : output_name(&output);
}

vantore_output *resolve_output_token(vantore_server &server, std::string_view token)
{
    if (vantore_output *o = output_by_name(server, token))
        return o;
    for (auto &o : each<&vantore_output::link>(server.outputs))
        if (output_token_id(*o.wlr_output) == token)
            return &o;
    return nullptr;
}
