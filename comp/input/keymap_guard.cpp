#include "keymap_guard.hpp"

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>
#include <virtual-keyboard-unstable-v1-protocol.h>

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <cstring>
#include <string_view>
#include <vector>

// In bytes. A keymap of the usual layouts has less than 0.1 MiB, and compiling one takes time in proportion.
static constexpr uint32_t largest_keymap = 1024 * 1024;
// Each file of the system's layouts that a keymap names takes up to a millisecond to compile.
static constexpr ptrdiff_t most_included_files = 1000;

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

// Only files in memory can have seals. Everything else, even a regular file of a file system in user space,
// may let its reader wait for ever.
static bool lies_in_memory(int fd)
{
    return fcntl(fd, F_GET_SEALS) >= 0;
}

static bool same_letter(char a, char b)
{
    return tolower(static_cast<unsigned char>(a)) == b;
}

static ptrdiff_t times_in(std::string_view text, std::string_view word)
{
    ptrdiff_t times = 0;
    while (const auto found = std::ranges::search(text, word, same_letter)) {
        times++;
        text = {found.end(), text.end()};
    }
    return times;
}

// Returns how many files the keymap names at most, for example three for `include "pc+us|de"`. The words that
// may stand before the name, and the characters between names, mean other things too. Reading them as the
// compiler does would be the only way to be exact, and any difference would let a keymap pass that names
// more.
static ptrdiff_t may_include(std::string_view text)
{
    ptrdiff_t names = 0;
    for (const char *word : {"include", "augment", "override", "replace", "alternate"})
        names += times_in(text, word);
    return names == 0
               ? 0
               : names + std::ranges::count_if(text, [](char c) { return strchr("+|^", c) != nullptr; });
}

// Copies the first `size` bytes of a client's memory file into one that nobody else can change. Returns -1 if
// the file can't be read, or if compiling its keymap would take too long.
static int private_copy(int fd, uint32_t size)
{
    if (size == 0 || size > largest_keymap || !lies_in_memory(fd))
        return -1;
    std::vector<char> bytes(size);
    if (!read_whole(fd, bytes) || may_include({bytes.data(), size}) > most_included_files)
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
