#include "files.hpp"

#include "../descriptors.hpp"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <string_view>

void config_dir(std::span<char> buf)
{
    const char *base = getenv("XDG_CONFIG_HOME");
    if (base != nullptr && *base != '\0') {
        snprintf(buf.data(), buf.size(), "%s/vantore", base);
        return;
    }
    const char *home = getenv("HOME");
    snprintf(buf.data(), buf.size(), "%s/.config/vantore", home != nullptr ? home : ".");
}

void config_path(std::span<char> buf, const char *name)
{
    std::array<char, 512> directory{};
    config_dir(directory);
    snprintf(buf.data(), buf.size(), "%s/%s", directory.data(), name);
}

config_file config_open(const char *path)
{
    descriptor opened = open_regular_file(path);
    config_file file{opened.fd >= 0 ? fdopen(opened.fd, "r") : nullptr};
    if (file != nullptr)
        opened.fd = -1; // the file closes it
    return file;
}

char *cfg_trim(char *s)
{
    s += strspn(s, " \t");
    size_t length = strlen(s);
    while (length > 0 && strchr("\t\n\r ", s[length - 1]) != nullptr)
        length--;
    s[length] = '\0';
    return s;
}

char *cfg_without_comment(char *line)
{
    line[strcspn(line, "#")] = '\0';
    return cfg_trim(line);
}

std::optional<cfg_pair> cfg_split(char *line)
{
    char *equals = strchr(line, '=');
    if (equals == nullptr)
        return std::nullopt;
    *equals = '\0';
    return cfg_pair{.key = cfg_trim(line), .value = cfg_trim(equals + 1)};
}

std::optional<cfg_pair> config_next_pair(FILE &file, std::span<char> line)
{
    while (fgets(line.data(), int(line.size()), &file) != nullptr)
        if (const auto pair = cfg_split(cfg_without_comment(line.data())))
            return pair;
    return std::nullopt;
}

bool cfg_bool(const char *value)
{
    const std::string_view text{value};
    return text == "true" || text == "1" || text == "yes";
}

int cfg_int(const char *value)
{
    using range = std::numeric_limits<int>;
    return int(std::clamp<long>(strtol(value, nullptr, 10), range::min(), range::max()));
}

double cfg_fraction(const char *value)
{
    using range = std::numeric_limits<float>;
    const double number = strtod(value, nullptr);
    return std::isnan(number) ? 0 : std::clamp<double>(number, range::lowest(), range::max());
}
