// Pictures in anonymous memory files, for handing over to other programs.
#pragma once

#include "capture_scale.hpp"

#include <cstddef>

struct strbuf;

// Puts a picture of four bytes a pixel, rows `fstride` bytes apart, into a new memory file, shrunk so that
// its longest side is at most max_dim (0: no limit). Appends the reply that describes it to `meta`. The
// caller closes the descriptor; -1 on failure, with nothing appended.
int vnt_rgba_to_memfd(const void *full, int sw, int sh, size_t fstride, int max_dim, strbuf &meta);
