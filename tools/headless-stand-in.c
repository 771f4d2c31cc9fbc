// A preload library for tests and the demo session that lets the compositor run without graphics hardware. The
// compositor itself knows nothing about it.
//
// - If the kernel has no /dev/udmabuf, memory files replace the buffers that this device would make.
// - VANTORE_HEADLESS_SIZE=WIDTHxHEIGHT sets the size of headless outputs.
#undef _FILE_OFFSET_BITS // with it, open would become open64, but this file defines both
#define _GNU_SOURCE
#include <dlfcn.h>
#include <errno.h>
#include <fcntl.h>
#include <linux/dma-buf.h>
#include <linux/udmabuf.h>
#include <stdarg.h>
#include <stdbool.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/ioctl.h>
#include <sys/mman.h>
#include <unistd.h>

static const char device[] = "/dev/udmabuf";
static int token = -1; // the descriptor that the process takes for the device

// Programs that the compositor starts should see the real system.
__attribute__((constructor)) static void affect_only_this_process(void)
{
	unsetenv("LD_PRELOAD");
}

static bool stands_in_for(const char *path)
{
	return path != NULL && strcmp(path, device) == 0 && access(device, F_OK) != 0;
}

static int open_through(const char *symbol, const char *path, int flags, mode_t mode)
{
	if (stands_in_for(path)) {
		token = memfd_create("udmabuf", MFD_CLOEXEC);
		return token;
	}
	int (*next)(const char *, int, ...) = dlsym(RTLD_NEXT, symbol);
	return next(path, flags, mode);
}

// Callers pass the mode argument only if the call may create a file.
#define MODE_ARGUMENT(flags, mode) \
	mode_t mode = 0; \
	if (((flags) & (O_CREAT | O_TMPFILE)) != 0) { \
		va_list args; \
		va_start(args, flags); \
		mode = va_arg(args, mode_t); \
		va_end(args); \
	}

// NOLINTNEXTLINE(readability-inconsistent-declaration-parameter-name): the C library's names are reserved
int open(const char *path, int flags, ...)
{
	MODE_ARGUMENT(flags, mode)
	return open_through("open", path, flags, mode);
}

// NOLINTNEXTLINE(readability-inconsistent-declaration-parameter-name)
int open64(const char *path, int flags, ...)
{
	MODE_ARGUMENT(flags, mode)
	return open_through("open64", path, flags, mode);
}

int ioctl(int fd, unsigned long request, ...)
{
	va_list args;
	va_start(args, request);
	void *arg = va_arg(args, void *);
	va_end(args);
	if (fd == token && token >= 0 && request == UDMABUF_CREATE)
		return fcntl((int)((struct udmabuf_create *)arg)->memfd, F_DUPFD_CLOEXEC, 0);
	int (*next)(int, unsigned long, ...) = dlsym(RTLD_NEXT, "ioctl");
	const int result = next(fd, request, arg);
	// A memory file does not know this call and needs no cache synchronisation, so it succeeds.
	const bool unknown = result < 0 && (errno == ENOTTY || errno == EINVAL);
	return unknown && request == DMA_BUF_IOCTL_SYNC ? 0 : result;
}

struct wlr_output *wlr_headless_add_output(void *backend, unsigned int width, unsigned int height)
{
	struct wlr_output *(*next)(void *, unsigned int, unsigned int) =
		dlsym(RTLD_NEXT, "wlr_headless_add_output");
	const char *size = getenv("VANTORE_HEADLESS_SIZE");
	unsigned int wanted_width = 0, wanted_height = 0;
	if (size != NULL && sscanf(size, "%ux%u", &wanted_width, &wanted_height) == 2)
		return next(backend, wanted_width, wanted_height);
	return next(backend, width, height);
}
