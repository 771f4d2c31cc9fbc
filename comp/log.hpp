// The log of the process. It takes our own lines and those of wlroots to stderr.
#pragma once

#include "wlr.hpp"

#include <cstdarg>

// Restarts the time stamps of the log at zero, forgets the counts of filtered messages, and directs wlr_log
// to vnt_log at info verbosity.
void log_start();

// A wlr_log_func_t, for the main thread only. Three messages that some GPUs repeat without end are printed
// once and then counted. A later occurrence prints the count, at most once a minute.
void vnt_log(wlr_log_importance level, const char *fmt, va_list args);
