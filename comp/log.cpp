// A log line consists of a time stamp, the level's word and the message.
//
// The filter searches the format string and not the formatted text, so a line costs at most three searches in
// a short constant. A count is printed only when its message occurs again, so nothing reports the count of a
// burst that has stopped.

#include "log.hpp"

#include "platform.hpp"

#include <algorithm>
#include <array>
#include <cstring>

static constexpr std::array LOG_SPAM{
    "a disjoint operation occurred and the render timer is invalid",
    "timer was read too early, gpu isn't done!",
    "Warning: Failed to use optimized blur",
};
static constexpr int64_t summary_interval_ns = 60'000'000'000;

static std::array<unsigned long, LOG_SPAM.size()> g_spam_seen;
static std::array<unsigned long, LOG_SPAM.size()> g_spam_told;
static std::array<int64_t, LOG_SPAM.size()> g_spam_last_ns;
static int64_t g_log_start; // monotonic nanoseconds

static FILE *log_file()
{
    return g_platform.log != nullptr ? g_platform.log : stderr;
}

static const char *level_word(wlr_log_importance level)
{
    switch (level) {
    case WLR_SILENT:
        return "SILENT";
    case WLR_INFO:
        return "INFO";
    case WLR_DEBUG:
        return "DEBUG";
    case WLR_ERROR:
    case WLR_LOG_IMPORTANCE_LAST:
        break;
    }
    return "ERROR";
}

static void log_stamp(wlr_log_importance level)
{
    const int64_t ms = std::max<int64_t>(g_platform.monotonic_ns() - g_log_start, 0) / 1'000'000;
    const int64_t seconds = ms / 1000;
    fprintf(log_file(), "%02d:%02d:%02d.%03d [%s] ", int(seconds / 3600), int(seconds / 60 % 60),
            int(seconds % 60), int(ms % 1000), level_word(level));
}

// Returns the index of the filtered message that the format string contains, or LOG_SPAM.size().
static size_t spam_index(const char *fmt)
{
    const auto found =
        std::ranges::find_if(LOG_SPAM, [&](const char *spam) { return strstr(fmt, spam) != nullptr; });
    return size_t(found - LOG_SPAM.begin());
}

static void log_line(wlr_log_importance level, const char *fmt, va_list args, const char *ending)
{
    log_stamp(level);
    vfprintf(log_file(), fmt, args);
    fputs(ending, log_file());
}

static void log_spam(size_t i, wlr_log_importance level, const char *fmt, va_list args)
{
    const int64_t now = g_platform.monotonic_ns();
    g_spam_seen[i]++;
    if (g_spam_seen[i] == 1) {
        log_line(level, fmt, args,
                 "\n  ↑ expected on this GPU; further occurrences are counted, not logged\n");
    } else if (now - g_spam_last_ns[i] >= summary_interval_ns) {
        log_stamp(WLR_INFO);
        fprintf(log_file(), "(suppressed %lu more: %s)\n", g_spam_seen[i] - g_spam_told[i], LOG_SPAM[i]);
    } else {
        return;
    }
    g_spam_told[i] = g_spam_seen[i];
    g_spam_last_ns[i] = now;
}

void vnt_log(wlr_log_importance level, const char *fmt, va_list args)
{
    if (wlr_log_get_verbosity() < level)
        return;
    if (const size_t i = spam_index(fmt); i < LOG_SPAM.size())
        log_spam(i, level, fmt, args);
    else
        log_line(level, fmt, args, "\n");
}

void log_start()
{
    g_log_start = g_platform.monotonic_ns();
    g_spam_seen = {};
    g_spam_told = {};
    g_spam_last_ns = {};
    wlr_log_init(WLR_INFO, vnt_log);
}
