// The log sink of the process: its own lines and those of wlroots, to stderr.
#pragma once

#include "wlr.hpp"

#include <cstdarg>

// Makes this moment the zero of the log's time stamps, forgets the counts of filtered messages, and
// directs wlr_log to vnt_log at info verbosity.
void log_start();

// A wlr_log_func_t. Three messages that some GPUs repeat without end are printed once and then counted; the
// count is told with a later occurrence, at most once a minute. Main thread only.
void vnt_log(wlr_log_importance level, const char *fmt, va_list args);
