// Replies of the compositor as tables for people.
#pragma once

#include <optional>
#include <string>
#include <string_view>

// Nothing when the reply is no JSON array of objects.
std::optional<std::string> workspaces_table(std::string_view reply);
std::optional<std::string> windows_table(std::string_view reply);
std::optional<std::string> outputs_table(std::string_view reply);
