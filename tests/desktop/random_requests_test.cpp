// Hostile clients send random requests, and the invariants are checked after each. A session runs in a child
// of its own, so that a sequence that crashes it is shortened like one that breaks a rule.

#include "support/random_requests.hpp"
#include "support/sequences.hpp"

#include <gtest/gtest.h>
#include <iostream>
#include <set>

using test::outcome;
using test::random_requests;

namespace
{

constexpr size_t operations_in_a_sequence = 300;
constexpr size_t fewest_kinds = 60; // one sequence alone has more

outcome play(const std::vector<unsigned> &seeds, const test::say_what_was_done &did)
{
    outcome result;
    random_requests session;
    session.begin();
    for (const unsigned seed : seeds) {
        did(session.step(seed));
        result.broken = session.broken();
        if (!result.broken.empty() || testing::Test::HasFailure()) {
            result.state = session.picture_of_it();
            break;
        }
    }
    result.notes = {session.taken().begin(), session.taken().end()};
    session.end();
    return result;
}

TEST(random_requests, never_end_the_session_nor_break_a_rule)
{
    std::set<std::string> kinds;
    test::play_sequences(operations_in_a_sequence, [&](const test::sequence_run &run) {
        const outcome got =
            test::play_in_child([&](const auto &did) { return play(run.seeds, did); }, run.prints);
        kinds.insert(got.notes.begin(), got.notes.end());
        return got;
    });
    std::cout << kinds.size() << " kinds of requests were taken from clients that lived on\n";
    EXPECT_GT(kinds.size(), fewest_kinds);
}

} // namespace
