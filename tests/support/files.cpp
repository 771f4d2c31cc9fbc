#include "files.hpp"

#include <fstream>
#include <iterator>

namespace test
{

std::string contents(const std::filesystem::path &path)
{
    std::ifstream file{path, std::ios::binary};
    return {std::istreambuf_iterator<char>{file}, {}};
}

std::map<std::string, std::string> make_session_folders(const std::filesystem::path &root)
{
    for (const char *name : {"home", "run", "config", "cache", "data", "bin"})
        std::filesystem::create_directory(root / name);
    std::filesystem::permissions(root / "run", std::filesystem::perms::owner_all);
    return {
        {"HOME", root / "home"},
        {"XDG_RUNTIME_DIR", root / "run"},
        {"XDG_CONFIG_HOME", root / "config"},
        {"XDG_CACHE_HOME", root / "cache"},
        {"XDG_DATA_HOME", root / "data"},
        {"PATH", root / "bin"},
        {"WLR_BACKENDS", "headless"},
        {"VANTORE_STANDARD_WALLPAPER", ""}, // no picture unless a test asks for one
    };
}

} // namespace test
