// Runs random operations in a row and checks every invariant after each. A normal run takes as many sequences
// as fit into its time. VANTORE_TEST_SEQUENCES sets their number instead, and VANTORE_TEST_FIRST the seed of
// the first one. VANTORE_TEST_SEED picks one seed alone. A sequence that breaks a rule is shortened before it
// is reported.

#include "support/random_session.hpp"

using test::random_session;
using x11 = random_session::x11;

namespace
{

constexpr size_t operations_in_a_sequence = 200;
constexpr size_t most_shortenings = 80;

struct outcome {
    std::vector<std::string> broken; // the rules that the last operation broke
    std::string done, state;
};

// Stops at the first operation that breaks a rule.
outcome run(const std::vector<unsigned> &seeds, x11 windows_of_x11)
{
    outcome result;
    random_session session;
    session.begin(windows_of_x11);
    for (const unsigned seed : seeds) {
        result.done += session.step(seed) + "\n";
        result.broken = session.broken();
        if (!result.broken.empty()) {
            result.state = session.picture_of_it();
            break;
        }
    }
    session.end();
    return result;
}

// Leaves out operations without which a rule still breaks, in ever smaller pieces.
std::vector<unsigned> shortened(std::vector<unsigned> seeds, x11 windows_of_x11)
{
    size_t runs = 0;
    for (size_t piece = seeds.size() / 2; piece > 0; piece /= 2) {
        for (size_t from = 0; from + piece <= seeds.size() && runs < most_shortenings; runs++) {
            std::vector<unsigned> without{seeds};
            without.erase(without.begin() + ptrdiff_t(from), without.begin() + ptrdiff_t(from + piece));
            if (run(without, windows_of_x11).broken.empty())
                from += piece;
            else
                seeds = without;
        }
    }
    return seeds;
}

std::vector<unsigned> operations_of(unsigned sequence)
{
    std::mt19937 random{sequence};
    std::vector<unsigned> seeds(operations_in_a_sequence);
    std::ranges::generate(seeds, [&] { return unsigned(random()); });
    return seeds;
}

void expect_no_broken_rule(unsigned sequence)
{
    const std::vector<unsigned> seeds = operations_of(sequence);
    const x11 windows_of_x11 =
        sequence % 4 == 1 ? x11::with : x11::without; // X servers take their time to start
    if (run(seeds, windows_of_x11).broken.empty())
        return;
    const outcome last = run(shortened(seeds, windows_of_x11), windows_of_x11);
    ADD_FAILURE() << "VANTORE_TEST_SEED=" << sequence << " breaks: " << testing::PrintToString(last.broken)
                  << "\nafter\n"
                  << last.done << last.state;
}

unsigned long number_from_environment(const char *name)
{
    const char *text = getenv(name);
    return text != nullptr ? strtoul(text, nullptr, 10) : 0;
}

// The sanitizers make everything several times slower.
std::chrono::seconds time_to_spend()
{
#ifdef __SANITIZE_ADDRESS__
    return std::chrono::seconds{60};
#else
    return std::chrono::seconds{30};
#endif
}

TEST(random_operations, break_no_rule)
{
    if (const auto seed = number_from_environment("VANTORE_TEST_SEED"); seed != 0)
        return expect_no_broken_rule(unsigned(seed));
    const auto wish = number_from_environment("VANTORE_TEST_SEQUENCES");
    const auto first = std::max(1UL, number_from_environment("VANTORE_TEST_FIRST"));
    const auto end = std::chrono::steady_clock::now() + time_to_spend();
    unsigned long played = 0;
    while (!HasFailure() &&
           (wish != 0 ? played < wish : played == 0 || std::chrono::steady_clock::now() < end))
        expect_no_broken_rule(unsigned(first + played++));
    std::cout << played << " sequences of " << operations_in_a_sequence << " operations\n";
}

} // namespace
