#include "wallpaper_pick.hpp"

#include "../handles.hpp"
#include "../platform.hpp"

#include <algorithm>
#include <cstring>
#include <dirent.h>
#include <span>
#include <strings.h>

static constexpr const char *suffixes[]{".png", ".jpg", ".jpeg", ".bmp", ".webp", ".gif"};

static std::string_view base_name(std::string_view path)
{
    return path.substr(path.rfind('/') + 1);
}

bool wp_recently_shown(const recent_pictures &recent, std::string_view name)
{
    return std::ranges::contains(std::span{recent.names}.first(recent.count), name);
}

static void note_shown(recent_pictures &recent, std::string_view name)
{
    recent.names[recent.head] = name;
    recent.head = (recent.head + 1) % recent.names.size();
    recent.count = std::min(recent.count + 1, recent.names.size());
}

bool is_picture_name(const char *name)
{
    const char *suffix = strrchr(name, '.');
    return suffix != nullptr && name[0] != '.' &&
           std::ranges::any_of(suffixes, [&](const char *known) { return strcasecmp(suffix, known) == 0; });
}

static bool is_candidate(const char *name, const left_out_pictures &left_out)
{
    return is_picture_name(name) && name != left_out.name &&
           (left_out.recent == nullptr || !wp_recently_shown(*left_out.recent, name));
}

// The n-th candidate replaces the choice with a chance of 1 in n, so in the end all had the same chance.
std::string pick_random_image_ex(const std::string &folder, const left_out_pictures &left_out)
{
    const handle<DIR, closedir> listing{opendir(folder.c_str())};
    std::string choice;
    uint32_t candidates = 0;
    while (const dirent *entry = listing != nullptr ? readdir(listing.get()) : nullptr)
        if (is_candidate(entry->d_name, left_out) && g_platform.random_below(++candidates) == 0)
            choice = entry->d_name;
    return choice.empty() ? choice : folder + '/' + choice;
}

std::string pick_random_image(recent_pictures &recent, const std::string &folder,
                              const std::string &last_path)
{
    std::string path = pick_random_image_ex(folder, {.recent = &recent});
    if (path.empty())
        path = pick_random_image_ex(folder, {.name = base_name(last_path)});
    if (path.empty())
        path = pick_random_image_ex(folder, {});
    if (!path.empty())
        note_shown(recent, base_name(path));
    return path;
}
