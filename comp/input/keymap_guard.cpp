#include "keymap_guard.hpp"

#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>
#include <virtual-keyboard-unstable-v1-protocol.h>

#include <cerrno>
#include <vector>

// In bytes. A keymap of the usual layouts has less than 0.1 MiB, and compiling one takes time in proportion.
static constexpr uint32_t largest_keymap = 1024 * 1024;

enum keyboard_request : uint32_t { KEYBOARD_KEYMAP, KEYBOARD_KEY, KEYBOARD_MODIFIERS, KEYBOARD_DESTROY };

static bool read_whole(int fd, std::vector<char> &bytes)
{
    size_t done = 0;
    while (done < bytes.size()) {
        const ssize_t n = pread(fd, bytes.data() + done, bytes.size() - done, off_t(done));
        if (n < 0 && errno == EINTR)
            continue;
        if (n <= 0)
            return false;
        done += size_t(n);
    }
    return true;
}

static bool write_whole(int fd, const std::vector<char> &bytes)
{
    size_t done = 0;
    while (done < bytes.size()) {
        const ssize_t n = write(fd, bytes.data() + done, bytes.size() - done);
        if (n <= 0)
            return false;
        done += size_t(n);
    }
    return true;
}

// Copies the first `size` bytes of a client's file into a memory file, which nobody else can change. Returns
// -1 on failure. Fails for everything except regular files, because other reads may block.
static int private_copy(int fd, uint32_t size)
{
    struct stat info{};
    if (size == 0 || size > largest_keymap || fstat(fd, &info) != 0 || !S_ISREG(info.st_mode))
        return -1;
    std::vector<char> bytes(size);
    if (!read_whole(fd, bytes))
        return -1;
    const int copy = memfd_create("keymap", MFD_CLOEXEC);
    if (copy >= 0 && write_whole(copy, bytes))
        return copy;
    if (copy >= 0)
        close(copy);
    return -1;
}

static void take_keymap(const struct zwp_virtual_keyboard_v1_interface &library, wl_resource *resource,
                        const wl_argument *a)
{
    wl_client *client = wl_resource_get_client(resource);
    const bool keyboard_is_gone = wl_resource_get_user_data(resource) == nullptr;
    if (keyboard_is_gone) { // with its seat; the library would forget the descriptor
        close(a[1].h);
        return;
    }
    const int copy = private_copy(a[1].h, a[2].u);
    close(a[1].h);
    if (copy >= 0)
        library.keymap(client, resource, a[0].u, copy, a[2].u); // the library closes the copy
    else
        wl_client_post_implementation_error(client, "the keymap can't be read from its descriptor");
}

static_assert(sizeof(struct zwp_virtual_keyboard_v1_interface) == 4 * sizeof(void (*)()),
              "list the new request below");

int dispatch_virtual_keyboard_request(const void *implementation, void *target, uint32_t opcode,
                                      const wl_message *, wl_argument *a)
{
    const auto &library = *static_cast<const struct zwp_virtual_keyboard_v1_interface *>(implementation);
    auto *resource = static_cast<wl_resource *>(target);
    wl_client *client = wl_resource_get_client(resource);
    switch (keyboard_request(opcode)) {
    case KEYBOARD_KEYMAP:
        take_keymap(library, resource, a);
        break;
    case KEYBOARD_KEY:
        library.key(client, resource, a[0].u, a[1].u, a[2].u);
        break;
    case KEYBOARD_MODIFIERS:
        library.modifiers(client, resource, a[0].u, a[1].u, a[2].u, a[3].u);
        break;
    case KEYBOARD_DESTROY:
        library.destroy(client, resource);
        break;
    }
    return 0;
}
