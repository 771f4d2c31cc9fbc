// A connection to the compositor's socket that sends and receives frames. Its calls block.
#pragma once

#include "ipc/protocol.hpp"

#include <expected>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

// Owns a descriptor and closes it.
class owned_fd
{
public:
    explicit owned_fd(int descriptor = -1) : fd(descriptor) {}
    ~owned_fd();
    owned_fd(owned_fd &&other) noexcept;
    owned_fd &operator=(owned_fd &&other) noexcept;
    owned_fd(const owned_fd &) = delete;
    owned_fd &operator=(const owned_fd &) = delete;

    [[nodiscard]] int get() const { return fd; }
    [[nodiscard]] bool is_open() const { return fd >= 0; }

private:
    int fd;
};

struct frame {
    uint32_t type = 0;
    std::string payload;
    std::vector<owned_fd> attached; // the descriptors that came with the frame
};

// Errors are messages for the user.
class connection
{
public:
    // Connects to the socket with this path.
    static std::expected<connection, std::string> open(const char *path);

    std::expected<void, std::string> send(uint32_t type, std::string_view payload);
    // Becomes readable when there is something to receive.
    [[nodiscard]] int descriptor() const { return socket.get(); }
    // Receives the next frame, which may be a reply or an event.
    std::expected<frame, std::string> receive();
    // Sends a request and receives its reply; passes over events that come first.
    std::expected<frame, std::string> ask(uint32_t type, std::string_view payload);

private:
    explicit connection(owned_fd connected) : socket(std::move(connected)) {}
    std::expected<void, std::string> read_exactly(char *into, size_t count, std::vector<owned_fd> &attached);

    owned_fd socket;
};
