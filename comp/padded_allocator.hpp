// Buffers for a software renderer, which draws in blocks of 4x4 pixels and stores each row of a block as 16
// aligned bytes, also where a block reaches beyond the picture.
#pragma once

#include "wlr.hpp"

// Returns an allocator whose buffers have room for whole blocks, whatever their size is. It takes `inner`
// over and destroys it at its end.
wlr_allocator *padded_allocator_create(wlr_allocator *inner);
