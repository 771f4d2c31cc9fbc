// A connection to the compositor's socket: frames out, frames in. It blocks, as a tool for people may.
#pragma once

#include "ipc/protocol.hpp"

#include <expected>
#include <optional>
#include <string>
#include <string_view>

// A descriptor that is closed with its owner.
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
    owned_fd attached; // the descriptor that came with it, if one did
};

// Errors are sentences for people.
class connection
{
public:
    // To the socket of this path.
    static std::expected<connection, std::string> open(const char *path);

    std::expected<void, std::string> send(uint32_t type, std::string_view payload);
    // Becomes readable when there is something to receive.
    [[nodiscard]] int descriptor() const { return socket.get(); }
    // The next frame, reply or event.
    std::expected<frame, std::string> receive();
    // The next frame that is no event.
    std::expected<frame, std::string> ask(uint32_t type, std::string_view payload);

private:
    explicit connection(owned_fd connected) : socket(std::move(connected)) {}
    std::expected<void, std::string> read_exactly(char *into, size_t count, owned_fd &attached);

    owned_fd socket;
};
