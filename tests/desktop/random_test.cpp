// Runs random operations in a row and checks every invariant after each.

#include "support/random_session.hpp"
#include "support/sequences.hpp"

using test::outcome;
using test::random_session;
using x11 = random_session::x11;

namespace
{

constexpr size_t operations_in_a_sequence = 200;

outcome play(const test::sequence_run &run)
{
    outcome result;
    random_session session;
    session.begin(run.sequence % 4 == 1 ? x11::with : x11::without); // X servers take their time to start
    for (const unsigned seed : run.seeds) {
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

TEST(random_operations, break_no_rule)
{
    test::play_sequences(operations_in_a_sequence, play);
}

} // namespace
