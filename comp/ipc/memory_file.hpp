// Puts pictures into anonymous memory files, to hand them to other programs.
#pragma once

#include "capture_scale.hpp"

#include <cstddef>

struct strbuf;

// Puts a picture into a new memory file and shrinks it so that its longest side is at most max_dim (0: no
// limit). A pixel is four bytes, and rows lie `fstride` bytes apart. Appends the reply that describes the
// file to `meta`. The caller closes the descriptor. Returns -1 on failure and appends nothing.
int vnt_rgba_to_memfd(const void *full, int sw, int sh, size_t fstride, int max_dim, strbuf &meta);
