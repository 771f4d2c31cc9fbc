// Pictures are scaled down and put into memory files.

#include "ipc/capture_scale.hpp"
#include "ipc/memory_file.hpp"
#include "strbuf.hpp"

#include <gmock/gmock.h>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

using testing::ElementsAre;
using testing::ElementsAreArray;

static std::ostream &operator<<(std::ostream &out, const capture_size &size)
{
    return out << size.width << 'x' << size.height;
}

namespace
{

TEST(capture_fit, shrinks_to_the_longest_side)
{
    EXPECT_EQ(capture_fit({1000, 500}, 320), (capture_size{320, 160}));
    EXPECT_EQ(capture_fit({500, 1000}, 320), (capture_size{160, 320}));
    EXPECT_EQ(capture_fit({1000, 333}, 100), (capture_size{100, 33}));
}

TEST(capture_fit, never_enlarges)
{
    EXPECT_EQ(capture_fit({1000, 500}, 2000), (capture_size{1000, 500}));
    EXPECT_EQ(capture_fit({1000, 500}, 1000), (capture_size{1000, 500}));
}

TEST(capture_fit, takes_0_for_no_limit)
{
    EXPECT_EQ(capture_fit({1000, 500}, 0), (capture_size{1000, 500}));
}

TEST(capture_fit, keeps_a_pixel_on_each_side)
{
    EXPECT_EQ(capture_fit({1000, 1}, 320), (capture_size{320, 1}));
    EXPECT_EQ(capture_fit({1, 1000}, 1), (capture_size{1, 1}));
}

std::vector<uint32_t> sampled(const std::vector<uint32_t> &source, capture_size size, size_t stride,
                              capture_size wanted)
{
    std::vector<uint32_t> target(size_t(wanted.width) * size_t(wanted.height));
    capture_sample(source.data(), size, stride * 4, target.data(), wanted);
    return target;
}

TEST(capture_sample, copies_a_picture_that_keeps_its_size)
{
    EXPECT_THAT(sampled({1, 2, 3, 4, 5, 6}, {3, 2}, 3, {3, 2}), ElementsAre(1, 2, 3, 4, 5, 6));
}

TEST(capture_sample, leaves_out_what_lies_between_rows)
{
    EXPECT_THAT(sampled({1, 2, 0, 4, 5, 0}, {2, 2}, 3, {2, 2}), ElementsAre(1, 2, 4, 5));
}

TEST(capture_sample, takes_the_nearest_pixel_above_and_to_the_left)
{
    EXPECT_THAT(sampled({0, 1, 2, 3, 4, 5, 6, 7, 8, 9}, {5, 2}, 5, {3, 1}), ElementsAre(0, 1, 3));
    EXPECT_THAT(sampled({0, 1, 2, 3, 4}, {1, 5}, 1, {1, 3}), ElementsAre(0, 1, 3));
    EXPECT_THAT(sampled({0, 1, 2, 3, 4, 5}, {2, 3}, 2, {2, 2}), ElementsAre(0, 1, 2, 3));
}

struct memory_file : testing::Test {
    memory_file() : source(20)
    {
        std::ranges::generate(source, [n = 0U]() mutable { return n++; });
    }

    std::vector<uint32_t> contents(int file)
    {
        struct stat about{};
        fstat(file, &about);
        std::vector<uint32_t> pixels(size_t(about.st_size) / 4);
        EXPECT_EQ(pread(file, pixels.data(), pixels.size() * 4, 0), about.st_size);
        close(file);
        return pixels;
    }

    std::vector<uint32_t> source; // 5 by 4
    strbuf meta;
};

TEST_F(memory_file, holds_the_picture_and_nothing_else)
{
    EXPECT_THAT(contents(vnt_rgba_to_memfd(source.data(), 5, 4, 20, 0, meta)), ElementsAreArray(source));
    EXPECT_EQ(meta.text(), R"({"ok":true,"kind":"shm","w":5,"h":4,"stride":20})");
}

TEST_F(memory_file, is_described_at_the_size_that_it_was_shrunk_to)
{
    EXPECT_THAT(contents(vnt_rgba_to_memfd(source.data(), 5, 4, 20, 2, meta)), ElementsAre(0, 2));
    EXPECT_EQ(meta.text(), R"({"ok":true,"kind":"shm","w":2,"h":1,"stride":8})");
}

} // namespace
