// Colours in the form that the scene and cairo take.
#pragma once

#include <array>

using color = std::array<float, 4>; // red, green, blue, alpha, from 0 to 1
