#include "sequences.hpp"

#include <algorithm>
#include <array>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <gtest/gtest.h>
#include <iostream>
#include <poll.h>
#include <random>
#include <sstream>
#include <string_view>
#include <sys/wait.h>
#include <unistd.h>

namespace test
{

static constexpr size_t most_shortenings = 80;
static constexpr std::chrono::seconds longest_shortening{60};
static constexpr std::chrono::seconds longest_run{120};

// Leaves out operations without which a rule still breaks, in ever smaller pieces.
static sequence_run shortened(sequence_run whole, const player &play)
{
    const auto end = std::chrono::steady_clock::now() + longest_shortening;
    size_t runs = 0;
    for (size_t piece = whole.seeds.size() / 2; piece > 0; piece /= 2) {
        for (size_t from = 0; from + piece <= whole.seeds.size() && runs < most_shortenings &&
                              std::chrono::steady_clock::now() < end;
             runs++) {
            sequence_run without{whole};
            const auto first = without.seeds.begin() + ptrdiff_t(from);
            without.seeds.erase(first, first + ptrdiff_t(piece));
            if (play(without).broken.empty())
                from += piece;
            else
                whole = without;
        }
    }
    return whole;
}

static void expect_no_broken_rule(unsigned sequence, size_t operations, const player &play)
{
    std::mt19937 random{sequence};
    sequence_run whole{.sequence = sequence, .seeds = std::vector<unsigned>(operations), .prints = false};
    std::ranges::generate(whole.seeds, [&] { return unsigned(random()); });
    const std::vector<std::string> broken = play(whole).broken;
    if (broken.empty())
        return;
    // The test runner may lose its patience with what follows, and chance may keep a replay from breaking it.
    std::cout << "VANTORE_TEST_SEED=" << sequence << " breaks " << testing::PrintToString(broken)
              << "; shortening it\n"
              << std::flush;
    sequence_run shortest = shortened(whole, play);
    shortest.prints = true;
    const outcome last = play(shortest);
    ADD_FAILURE() << "VANTORE_TEST_SEED=" << sequence << " breaks: " << testing::PrintToString(last.broken)
                  << "\nafter\n"
                  << last.done << last.state;
}

static unsigned long number_from_environment(const char *name)
{
    const char *text = getenv(name);
    return text != nullptr ? strtoul(text, nullptr, 10) : 0;
}

// The sanitizers make everything several times slower.
static std::chrono::seconds time_to_spend()
{
    if (const auto wish = number_from_environment("VANTORE_TEST_SECONDS"); wish != 0)
        return std::chrono::seconds{wish};
#ifdef __SANITIZE_ADDRESS__
    return std::chrono::seconds{60};
#else
    return std::chrono::seconds{30};
#endif
}

void play_sequences(size_t operations, const player &play)
{
    if (const auto seed = number_from_environment("VANTORE_TEST_SEED"); seed != 0)
        return expect_no_broken_rule(unsigned(seed), operations, play);
    const auto wish = number_from_environment("VANTORE_TEST_SEQUENCES");
    const auto first = std::max(1UL, number_from_environment("VANTORE_TEST_FIRST"));
    const auto end = std::chrono::steady_clock::now() + time_to_spend();
    unsigned long played = 0;
    while (!testing::Test::HasFailure() &&
           (wish != 0 ? played < wish : played == 0 || std::chrono::steady_clock::now() < end))
        expect_no_broken_rule(unsigned(first + played++), operations, play);
    std::cout << played << " sequences of " << operations << " operations\n";
}

// A child reports with lines that begin with a letter.
enum class report : char { done = 'd', broken = 'b', state = 's', note = 'n' };

static void write_lines(int pipe, report kind, std::string_view text)
{
    while (!text.empty()) {
        const size_t length = std::min(text.find('\n'), text.size());
        const std::string line = char(kind) + std::string{text.substr(0, length)} + '\n';
        for (std::string_view left = line; !left.empty();) {
            const ssize_t n = write(pipe, left.data(), left.size());
            if (n < 0)
                return;
            left.remove_prefix(size_t(n));
        }
        text.remove_prefix(std::min(length + 1, text.size()));
    }
}

static outcome read_lines(const std::string &text)
{
    outcome o;
    std::istringstream lines{text};
    for (std::string line; std::getline(lines, line);) {
        const std::string rest = line.substr(std::min<size_t>(1, line.size()));
        if (line.starts_with(char(report::broken)))
            o.broken.push_back(rest);
        else if (line.starts_with(char(report::note)))
            o.notes.push_back(rest);
        else if (line.starts_with(char(report::done)))
            o.done += rest + '\n';
        else if (line.starts_with(char(report::state)))
            o.state += rest + '\n';
    }
    return o;
}

[[noreturn]] static void run_child(const std::function<outcome(const say_what_was_done &)> &play, int pipe,
                                   bool prints)
{
    if (!prints) {
        const int nothing = open("/dev/null", O_WRONLY | O_CLOEXEC);
        dup2(nothing, STDOUT_FILENO);
        dup2(nothing, STDERR_FILENO);
        close(nothing);
    }
    const outcome o = play([pipe](const std::string &line) { write_lines(pipe, report::done, line); });
    for (const std::string &rule : o.broken)
        write_lines(pipe, report::broken, rule);
    for (const std::string &note : o.notes)
        write_lines(pipe, report::note, note);
    write_lines(pipe, report::state, o.state);
    exit(testing::Test::HasFailure() ? EXIT_FAILURE
                                     : EXIT_SUCCESS); // exit() also runs the sanitizers' leak check
}

// Reads until the other end is closed. Returns false if that takes too long.
static bool read_all(int pipe, std::string &text)
{
    const auto give_up = std::chrono::steady_clock::now() + longest_run;
    std::array<char, 4096> bytes;
    for (;;) {
        const auto left =
            std::chrono::duration_cast<std::chrono::milliseconds>(give_up - std::chrono::steady_clock::now());
        pollfd waiting{.fd = pipe, .events = POLLIN, .revents = 0};
        if (left.count() <= 0 || poll(&waiting, 1, int(left.count())) == 0)
            return false;
        const ssize_t n = read(pipe, bytes.data(), bytes.size());
        if (n <= 0)
            return true;
        text.append(bytes.data(), size_t(n));
    }
}

static outcome failed(const std::string &why)
{
    return {.broken = {why}, .done = {}, .state = {}, .notes = {}};
}

static bool has_threads()
{
    return std::distance(std::filesystem::directory_iterator{"/proc/self/task"}, {}) > 1;
}

outcome play_in_child(const std::function<outcome(const say_what_was_done &)> &play, bool prints)
{
    if (has_threads())
        return failed("this process has threads already; run the test alone");
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0)
        return failed("there is no pipe for the child");
    std::cout.flush();
    const pid_t child = fork();
    if (child == 0) {
        close(ends[0]);
        run_child(play, ends[1], prints);
    }
    close(ends[1]);
    std::string report;
    const bool ended = child > 0 && read_all(ends[0], report);
    close(ends[0]);
    if (child < 0)
        return failed("there is no process for the child");
    if (!ended)
        kill(child, SIGKILL);
    int status = 0;
    waitpid(child, &status, 0);
    outcome o = read_lines(report);
    if (!ended)
        o.broken.emplace_back("it does not come to an end");
    else if (WIFSIGNALED(status))
        o.broken.push_back("it ends by signal " + std::to_string(WTERMSIG(status)));
    else if (WEXITSTATUS(status) != 0)
        o.broken.push_back("it ends with status " + std::to_string(WEXITSTATUS(status)));
    return o;
}

} // namespace test
