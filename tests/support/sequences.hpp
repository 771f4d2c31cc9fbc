// Plays sequences of random operations, and shortens a sequence that breaks a rule before it reports it.
#pragma once

#include <functional>
#include <string>
#include <vector>

namespace test
{

struct outcome {
    std::vector<std::string> broken; // the rules that the last operation broke
    std::string done, state; // what the operations did, a line each, and what the session was like after them
    std::vector<std::string> notes; // what else the player wants to know
};

struct sequence_run {
    unsigned sequence; // its number
    std::vector<unsigned> seeds; // one for each operation
    bool prints; // otherwise what a child prints is thrown away
};

// Plays the operations of a run, and stops at the first one that breaks a rule.
using player = std::function<outcome(const sequence_run &)>;

// Plays as many sequences as fit into its time, at least one. A sequence that breaks a rule fails the test
// and ends the play. These environment variables change that:
//   VANTORE_TEST_SECONDS    the time
//   VANTORE_TEST_SEQUENCES  the number of sequences, however long they take
//   VANTORE_TEST_FIRST      the number of the first sequence instead of 1
//   VANTORE_TEST_SEED       the number of the only sequence
void play_sequences(size_t operations, const player &play);

using say_what_was_done = std::function<void(const std::string &line)>;

// Runs in a child, so that a crash, a hang and a failed expectation are outcomes like any other. Breaks a
// rule if this process already has threads, because a child would not have them. `play` says what it did
// before it does the next thing, or nobody would know after a crash; its `done` is ignored.
outcome play_in_child(const std::function<outcome(const say_what_was_done &)> &play, bool prints);

} // namespace test
