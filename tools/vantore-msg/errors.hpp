// How functions fail: with a sentence for the user.
#pragma once

#include <cerrno>
#include <cstring>
#include <expected>
#include <string>
#include <utility>

inline std::unexpected<std::string> wrong(std::string why)
{
    return std::unexpected{std::move(why)};
}

// Adds the reason that errno tells.
inline std::unexpected<std::string> system_error(const std::string &what)
{
    return wrong(what + ": " + strerror(errno));
}
