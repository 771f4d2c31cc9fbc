// Counts the instructions of one input event, from the device to the client's socket. callgrind counts them
// between two marks. Unlike times, they are the same in every run.

#include "support/process.hpp"

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>

namespace
{

constexpr int events = 200;

// The number that callgrind writes after "totals:", or 0 if there is none.
long instructions_in(const std::filesystem::path &file)
{
    std::ifstream in{file};
    for (std::string line; std::getline(in, line);)
        if (line.starts_with("totals: "))
            return strtol(line.c_str() + 8, nullptr, 10);
    return 0;
}

long instructions(const char *kind, int windows)
{
    test::private_world world;
    const std::filesystem::path out = world.directory() / "callgrind.out";
    world.environment["VANTORE_TEST_KIND"] = kind;
    world.environment["VANTORE_TEST_WINDOWS"] = std::to_string(windows);
    world.environment["VANTORE_TEST_EVENTS"] = std::to_string(events);
    test::process counted{{"valgrind", "--tool=callgrind", "--instr-atstart=no",
                           "--callgrind-out-file=" + out.string(), INPUT_MARKS_BINARY},
                          world.environment};
    while (!counted.wait())
        ;
    const long total = instructions_in(out);
    if (total == 0) {
        fprintf(stderr, "callgrind counted nothing:\n%s\n", counted.output().c_str());
        exit(1);
    }
    return total / events;
}

} // namespace

struct row {
    const char *what, *kind;
    int windows;
};

static constexpr row rows[]{
    {"key to the focused client", "key", 1},
    {"motion over a client with 1 window", "motion", 1},
    {"... with 10 windows", "motion", 10},
    {"... with 100 windows", "motion", 100},
    {"... with 300 windows", "motion", 300},
    {"motion over a title bar with 1 window", "title-motion", 1},
    {"... with 100 windows", "title-motion", 100},
    {"a step of a move with 1 window", "move", 1},
    {"... with 100 windows", "move", 100},
    {"... with the Mouse Tiler shown", "tiler-move", 100},
    {"a step of a resize with 1 window", "resize", 1},
    {"... with 100 windows", "resize", 100},
    {"a full draw of the Mouse Tiler", "tiler-draw", 10},
};

int main()
{
    printf("instructions of one event:\n");
    for (const row &r : rows) {
        printf("  %-40s %8ld\n", r.what, instructions(r.kind, r.windows));
        fflush(stdout);
    }
}
