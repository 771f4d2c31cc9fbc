// Instructions of one input event, from the device to the client's socket, counted by callgrind between two
// marks. Unlike times they are the same on every run.

#include "support/process.hpp"

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>

namespace
{

constexpr int events = 200;

// The number that callgrind writes behind "totals:"; 0 when there is none.
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

int main()
{
    printf("instructions of one event:\n  %-26s %8ld\n", "key to the focused client", instructions("key", 1));
    for (const int windows : {1, 10, 100, 300})
        printf("  motion with %3d windows    %8ld\n", windows, instructions("motion", windows));
}
