#include "descriptors.hpp"

#include "wlr.hpp"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>

static rlimit g_found_limit; // all zero before the first call

descriptor open_regular_file(const char *path)
{
    descriptor file{open(path, O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY)};
    struct stat status{};
    if (file.fd < 0 || fstat(file.fd, &status) != 0 || !S_ISREG(status.st_mode))
        return descriptor{-1};
    return file;
}

void descriptors_raise_limit()
{
    if (g_found_limit.rlim_max != 0 || getrlimit(RLIMIT_NOFILE, &g_found_limit) != 0)
        return;
    const rlimit raised{.rlim_cur = g_found_limit.rlim_max, .rlim_max = g_found_limit.rlim_max};
    if (setrlimit(RLIMIT_NOFILE, &raised) != 0)
        wlr_log(WLR_INFO, "vantore-comp: the limit of open descriptors stays at %llu: %s",
                static_cast<unsigned long long>(g_found_limit.rlim_cur), strerror(errno));
}

void descriptors_restore_limit()
{
    if (g_found_limit.rlim_max != 0)
        setrlimit(RLIMIT_NOFILE, &g_found_limit);
}
