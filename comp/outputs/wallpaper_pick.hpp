// Chooses the pictures of a slide show.
#pragma once

#include <array>
#include <string>
#include <string_view>

// The names of the pictures that an output has shown last, as a ring.
struct recent_pictures {
    std::array<std::string, 32> names;
    size_t count = 0; // how many names there are
    size_t head = 0; // where the next one goes
};

bool wp_recently_shown(const recent_pictures &recent, std::string_view name);

// Tells by the suffix whether a folder's file is a picture. Hidden files are not.
bool is_picture_name(const char *name);

// Pictures that a choice leaves out.
struct left_out_pictures {
    const recent_pictures *recent = nullptr; // null for none
    std::string_view name; // empty for none
};

// Returns the path of one of the folder's pictures, each with the same chance, or an empty text if there is
// none.
std::string pick_random_image_ex(const std::string &folder, const left_out_pictures &left_out);

// Returns a picture that was not shown recently, else one that was not shown last, else any. Notes it as
// shown. Returns an empty text if the folder has no picture.
std::string pick_random_image(recent_pictures &recent, const std::string &folder,
                              const std::string &last_path);
