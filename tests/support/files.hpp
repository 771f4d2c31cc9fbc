// Files that tests read, and folders that keep a session apart from others.
#pragma once

#include <filesystem>
#include <map>
#include <string>

namespace test
{

// Returns an empty text if the file can't be read.
std::string contents(const std::filesystem::path &path);

// Makes the folders that a session uses, and returns the variables that lead a session into them.
std::map<std::string, std::string> make_session_folders(const std::filesystem::path &root);

} // namespace test
