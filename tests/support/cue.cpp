#include "cue.hpp"

#include "places.hpp"

#include <cstdlib>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace test
{

cue::cue(std::filesystem::path where) : path(std::move(where))
{
    if (mkfifo(path.c_str(), 0600) != 0)
        ::abort();
    fd = open(path.c_str(), O_RDWR | O_CLOEXEC);
}

cue::~cue()
{
    close(fd);
}

std::vector<std::string> cue::child() const
{
    return {cued_child_binary, path};
}

void cue::give(const std::string &line) const
{
    if (write(fd, line.data(), line.size()) != ssize_t(line.size()))
        ::abort();
}

} // namespace test
