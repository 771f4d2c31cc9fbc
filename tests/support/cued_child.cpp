// A program that ends as it is told, for tests of crashing children: cued_child FIFO. It says "waiting",
// reads one cue from the FIFO ("segv", "abort" or "exit N") and follows it. It says "no cue" if it gets none.

#include <array>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <string_view>
#include <sys/resource.h>
#include <unistd.h>

namespace
{

[[noreturn]] void die_of(int signal_number)
{
    const rlimit no_core{};
    setrlimit(RLIMIT_CORE, &no_core);
    signal(signal_number, SIG_DFL); // a sanitizer would report the signal as a bug
    raise(signal_number);
    _exit(99);
}

} // namespace

int main(int argc, char **argv)
{
    FILE *cues = argc == 2 ? fopen(argv[1], "re") : nullptr;
    if (cues == nullptr)
        return 98;
    puts("waiting");
    fflush(stdout);
    std::array<char, 64> line{};
    const std::string_view cue = fgets(line.data(), int(line.size()), cues) != nullptr ? line.data() : "";
    fclose(cues);
    if (cue == "segv\n")
        die_of(SIGSEGV);
    if (cue == "abort\n")
        die_of(SIGABRT);
    if (cue.starts_with("exit "))
        return atoi(&line[5]);
    puts("no cue");
    return 97;
}
