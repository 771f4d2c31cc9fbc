// The median of measured values.
#pragma once

#include <algorithm>
#include <vector>

inline double median(std::vector<double> values)
{
    std::ranges::nth_element(values, values.begin() + ptrdiff_t(values.size() / 2));
    return values[values.size() / 2];
}
