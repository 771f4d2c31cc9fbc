#include "log.hpp"

#include "support/isolation.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::MatchesRegex;
using testing::Not;

namespace
{

const char *const arrow_line = "\n  ↑ expected on this GPU; further occurrences are counted, not logged\n";
const char *const repeated = "Warning: Failed to use optimized blur";

// The library passes its own messages with their formats. The compiler can't check a format that a test makes
// up.
void log_format(wlr_log_importance level, const char *fmt, ...)
{
    va_list args;
    va_start(args, fmt);
    vnt_log(level, fmt, args);
    va_end(args);
}

struct log_sink : testing::Test {
    void SetUp() override { log_start(); }

    // Returns what has been logged since the last call.
    std::string said()
    {
        const std::string all = world.log();
        return all.substr(std::exchange(read, all.size()));
    }

    test::isolation world;
    size_t read = 0;
};

TEST_F(log_sink, stamps_a_line_with_the_time_since_the_start_and_the_level)
{
    world.advance_clock_ms(((25 * 60 + 4) * 60 + 5) * 1000 + 67);
    wlr_log(WLR_ERROR, "it %s %d", "broke", 7);
    EXPECT_THAT(said(), MatchesRegex("25:04:05\\.067 \\[ERROR\\] "
                                     "\\[tests/unit/log_test\\.cpp:[0-9]+\\] it broke 7\n"));
}

TEST_F(log_sink, names_the_level_in_words)
{
    wlr_log(WLR_INFO, "a");
    EXPECT_THAT(said(), HasSubstr(" [INFO] "));
    wlr_log(WLR_SILENT, "b");
    EXPECT_THAT(said(), HasSubstr(" [SILENT] "));
    wlr_log_init(WLR_DEBUG, vnt_log);
    wlr_log(WLR_DEBUG, "c");
    EXPECT_THAT(said(), HasSubstr(" [DEBUG] "));
}

TEST_F(log_sink, clamps_a_time_before_the_start_to_zero)
{
    world.advance_clock_ms(-5000);
    wlr_log(WLR_INFO, "early");
    EXPECT_THAT(said(), testing::StartsWith("00:00:00.000 [INFO] "));
}

TEST_F(log_sink, drops_what_is_below_the_verbosity)
{
    wlr_log(WLR_DEBUG, "detail");
    EXPECT_THAT(said(), IsEmpty());
}

class repeated_message : public log_sink, public testing::WithParamInterface<const char *>
{
protected:
    void say() { log_format(WLR_ERROR, GetParam()); }
};

TEST_P(repeated_message, is_printed_once_with_the_arrow_line_and_then_counted_in_silence)
{
    say();
    EXPECT_THAT(said(), EndsWith(std::string{GetParam()} + arrow_line));
    say();
    say();
    world.advance_clock_ms(59'900);
    say();
    EXPECT_THAT(said(), IsEmpty());
    world.advance_clock_ms(200);
    say();
    EXPECT_THAT(said(), EndsWith(std::string{" [INFO] (suppressed 4 more: "} + GetParam() + ")\n"));
    say();
    EXPECT_THAT(said(), IsEmpty());
    world.advance_clock_ms(60'000);
    say();
    EXPECT_THAT(said(), EndsWith(std::string{" [INFO] (suppressed 2 more: "} + GetParam() + ")\n"));
}

INSTANTIATE_TEST_SUITE_P(each, repeated_message,
                         testing::Values("a disjoint operation occurred and the render timer is invalid",
                                         "timer was read too early, gpu isn't done!",
                                         "Warning: Failed to use optimized blur"));

TEST_F(log_sink, searches_the_format_and_not_the_formatted_text)
{
    wlr_log(WLR_INFO, "%s", repeated);
    wlr_log(WLR_INFO, "%s", repeated);
    EXPECT_THAT(said(), Not(HasSubstr("counted, not logged")));
}

TEST_F(log_sink, does_not_count_repeated_messages_below_the_verbosity)
{
    log_format(WLR_DEBUG, repeated);
    log_format(WLR_ERROR, repeated);
    EXPECT_THAT(said(), HasSubstr(arrow_line));
}

TEST_F(log_sink, keeps_a_count_for_each_repeated_message)
{
    log_format(WLR_ERROR, "Warning: Failed to use optimized blur");
    EXPECT_THAT(said(), HasSubstr(arrow_line));
    log_format(WLR_ERROR, "timer was read too early, gpu isn't done!");
    EXPECT_THAT(said(), HasSubstr(arrow_line));
}

TEST_F(log_sink, forgets_its_counts_at_a_new_start)
{
    log_format(WLR_ERROR, repeated);
    log_start();
    said();
    log_format(WLR_ERROR, repeated);
    EXPECT_THAT(said(), HasSubstr(arrow_line));
}

} // namespace
