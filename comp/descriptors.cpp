#include "descriptors.hpp"

#include "wlr.hpp"

#include <cerrno>
#include <cstring>
#include <sys/resource.h>

static rlimit g_found_limit; // all zero before the first call

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
