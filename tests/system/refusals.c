// A library that tests preload. It makes chosen calls of wlroots fail, as they do when hardware fails.
// VANTORE_TEST_REFUSE names the call.
#define _GNU_SOURCE
#include <dlfcn.h>
#include <stdbool.h>
#include <stdlib.h>
#include <string.h>

static bool refused(const char *call)
{
	const char *wish = getenv("VANTORE_TEST_REFUSE");
	return wish != NULL && strcmp(wish, call) == 0;
}

bool wlr_backend_start(void *backend)
{
	bool (*next)(void *) = dlsym(RTLD_NEXT, "wlr_backend_start");
	return !refused("start") && next(backend);
}

// wlroots itself relies on the true answer.
static bool asked_by_the_compositor(void *return_address)
{
	Dl_info caller;
	return dladdr(return_address, &caller) != 0 && strstr(caller.dli_fname, "vantore-comp") != NULL;
}

bool wlr_backend_is_multi(void *backend)
{
	if (refused("multi") && asked_by_the_compositor(__builtin_return_address(0)))
		return false;
	bool (*next)(void *) = dlsym(RTLD_NEXT, "wlr_backend_is_multi");
	return next(backend);
}

void *wlr_allocator_autocreate(void *backend, void *renderer)
{
	void *(*next)(void *, void *) = dlsym(RTLD_NEXT, "wlr_allocator_autocreate");
	return refused("allocator") ? NULL : next(backend, renderer);
}

void *wlr_xwayland_create(void *display, void *compositor, bool lazy)
{
	void *(*next)(void *, void *, bool) = dlsym(RTLD_NEXT, "wlr_xwayland_create");
	return refused("xwayland") ? NULL : next(display, compositor, lazy);
}
