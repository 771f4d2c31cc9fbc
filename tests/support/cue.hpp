// Tells a cued_child (support/cued_child.cpp) how to end.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace test
{

class cue
{
public:
    // Makes a FIFO there.
    explicit cue(std::filesystem::path where);
    ~cue();
    cue(const cue &) = delete;
    cue &operator=(const cue &) = delete;

    // The command that starts a child that waits for the next cue.
    [[nodiscard]] std::vector<std::string> child() const;

    // For one child each: the next that reads, be it started already or later.
    void segv() { give("segv\n"); }
    void abort() { give("abort\n"); }
    void exit(int status) { give("exit " + std::to_string(status) + "\n"); }

private:
    void give(const std::string &line);

    std::filesystem::path path;
    int fd; // both ends, so that nobody waits for somebody to open the other
};

} // namespace test
