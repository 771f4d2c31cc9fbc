#include "memory_file.hpp"

#include "../strbuf.hpp"

#include <sys/mman.h>
#include <unistd.h>

// Returns false if the file can't hold the picture.
static bool fill_file(int file, const void *full, capture_size source, size_t fstride, capture_size size)
{
    const size_t bytes = size_t(size.width) * 4 * size_t(size.height);
    if (ftruncate(file, off_t(bytes)) != 0)
        return false;
    void *target = mmap(nullptr, bytes, PROT_WRITE, MAP_SHARED, file, 0);
    if (target == MAP_FAILED)
        return false;
    capture_sample(full, source, fstride, target, size);
    munmap(target, bytes);
    return true;
}

int vnt_rgba_to_memfd(const void *full, int sw, int sh, size_t fstride, int max_dim, strbuf &meta)
{
    const capture_size source{.width = sw, .height = sh};
    const capture_size size = capture_fit(source, max_dim);
    const int file = memfd_create("vnt-capture", MFD_CLOEXEC);
    if (file < 0)
        return -1;
    if (!fill_file(file, full, source, fstride, size)) {
        close(file);
        return -1;
    }
    sb_appendf(meta, R"({"ok":true,"kind":"shm","w":%d,"h":%d,"stride":%zu})", size.width, size.height,
               size_t(size.width) * 4);
    return file;
}
