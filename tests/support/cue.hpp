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
    // Makes a FIFO at this path.
    explicit cue(std::filesystem::path where);
    ~cue();
    cue(const cue &) = delete;
    cue &operator=(const cue &) = delete;

    // Returns the command of a child that waits for the next cue.
    [[nodiscard]] std::vector<std::string> child() const;

    // Each call tells one child how to end: the next one that reads, even if it starts only later.
    void segv() const { give("segv\n"); }
    void abort() const { give("abort\n"); }
    void exit(int status) const { give("exit " + std::to_string(status) + "\n"); }

private:
    void give(const std::string &line) const;

    std::filesystem::path path;
    int fd; // open for both ends, so that neither side blocks when it opens its own
};

} // namespace test
