// Anonymous files that a client hands to the compositor.
#pragma once

#include <cstdlib>
#include <sys/mman.h>
#include <unistd.h>

namespace test
{

// Makes a file of `count` values that `paint` fills in. The caller closes it.
template <class Value, class Paint> int memory_file(size_t count, Paint paint)
{
    const size_t bytes = count * sizeof(Value);
    const int fd = memfd_create("test-client", MFD_CLOEXEC);
    if (fd < 0 || ftruncate(fd, off_t(bytes)) != 0)
        abort();
    void *memory = mmap(nullptr, bytes, PROT_READ | PROT_WRITE, MAP_SHARED, fd, 0);
    if (memory == MAP_FAILED)
        abort();
    paint(static_cast<Value *>(memory));
    munmap(memory, bytes);
    return fd;
}

} // namespace test
