// A session that tells other programs about its outputs.
#pragma once

#include "desktop.hpp"

#include <fstream>

namespace test
{

struct outputs_desk : desktop {
    // Returns the lines of the file that other programs read.
    std::vector<std::string> outputs_file()
    {
        std::ifstream file{world.runtime_directory() / "vantore-outputs"};
        std::vector<std::string> lines;
        for (std::string line; std::getline(file, line);)
            lines.push_back(line);
        return lines;
    }
};

} // namespace test
