// The parts of a title bar.

#include "presentation/dec_region.hpp"

#include <gtest/gtest.h>

namespace
{

TEST(dec_button_x, counts_from_the_right_edge)
{
    EXPECT_EQ(dec_button_x(640, DEC_CLOSE), 617);
    EXPECT_EQ(dec_button_x(640, DEC_MAXIMIZE), 595);
    EXPECT_EQ(dec_button_x(640, DEC_MINIMIZE), 573);
    EXPECT_EQ(dec_button_x(20, DEC_MINIMIZE), -47);
}

struct region_case {
    double rx, ry;
    vantore_dec_region region;
};

constexpr region_case regions[]{
    {617, -22, DEC_CLOSE},       {630.9, -8.1, DEC_CLOSE},   {631, -15, DEC_TITLEBAR},
    {616.9, -15, DEC_TITLEBAR},  {595, -15, DEC_MAXIMIZE},   {608.9, -15, DEC_MAXIMIZE},
    {609, -15, DEC_TITLEBAR},    {594.9, -15, DEC_TITLEBAR}, {573, -15, DEC_MINIMIZE},
    {586.9, -15, DEC_MINIMIZE},  {587, -15, DEC_TITLEBAR},   {572.9, -15, DEC_TITLEBAR},
    {620, -22.1, DEC_TITLEBAR},  {620, -8, DEC_TITLEBAR},    {0, -30, DEC_TITLEBAR},
    {639.9, -0.1, DEC_TITLEBAR},
};

TEST(dec_region_at, finds_the_buttons_and_nothing_between_them)
{
    for (const region_case &c : regions)
        EXPECT_EQ(dec_region_at(640, c.rx, c.ry), c.region) << c.rx << "," << c.ry;
}

} // namespace
