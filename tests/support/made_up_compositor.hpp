// The compositor's end of the IPC socket, played by a test: it says when to accept, what to read and what to
// send.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>

namespace test
{

struct ipc_request {
    uint32_t type = 0;
    std::string payload;
    friend bool operator==(const ipc_request &, const ipc_request &) = default;
};

// A frame's bytes.
std::string ipc_frame_of(uint32_t type, std::string_view payload);

// Listens from the start, for one connection at a time. What waits for the other end gives up after 10
// seconds, and fails the test.
class made_up_compositor
{
public:
    explicit made_up_compositor(const std::filesystem::path &path);
    ~made_up_compositor();
    made_up_compositor(const made_up_compositor &) = delete;
    made_up_compositor &operator=(const made_up_compositor &) = delete;

    // Accepts a connection and takes its first request.
    ipc_request hear();
    // The descriptor, which stays the caller's, travels with the first byte.
    void say(std::string_view bytes, int fd = -1) const;
    void hang_up();

private:
    [[nodiscard]] std::string read_bytes(size_t count) const;

    int listener = -1;
    int connection = -1;
};

} // namespace test
