// What the session has told its user.
#pragma once

#include "isolation.hpp"

namespace test
{

// Returns the text of each notification.
inline std::vector<std::string> notifications_in(const isolation &world)
{
    std::vector<std::string> texts;
    for (const auto &program : world.programs())
        if (program.front() == "notify-send")
            texts.push_back(program.back());
    return texts;
}

} // namespace test
