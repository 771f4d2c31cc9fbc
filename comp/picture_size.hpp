// The size of a picture.
#pragma once

struct picture_size {
    int width = 0, height = 0; // pixels
    friend bool operator==(const picture_size &, const picture_size &) = default;
};
