// Formats replies of the compositor as tables for people.
#pragma once

#include <optional>
#include <string>
#include <string_view>

// Empty if the reply is not a JSON array.
std::optional<std::string> workspaces_table(std::string_view reply);
std::optional<std::string> windows_table(std::string_view reply);
std::optional<std::string> outputs_table(std::string_view reply);
