// The compositor's end of the IPC socket, played by a test. The test decides when to accept, what to read and
// what to send.
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

// Returns the bytes of a frame.
std::string ipc_frame_of(uint32_t type, std::string_view payload);

// Listens from the start, for one connection at a time. A call that waits for the other end gives up after 10
// seconds and fails the test.
class made_up_compositor
{
public:
    explicit made_up_compositor(const std::filesystem::path &path);
    ~made_up_compositor();
    made_up_compositor(const made_up_compositor &) = delete;
    made_up_compositor &operator=(const made_up_compositor &) = delete;

    // Accepts a connection and reads its first request.
    ipc_request hear();
    // Sends the bytes. The descriptor travels with the first byte and stays the caller's.
    void say(std::string_view bytes, int fd = -1) const;
    void hang_up();

private:
    [[nodiscard]] std::string read_bytes(size_t count) const;

    int listener = -1;
    int connection = -1;
};

} // namespace test
