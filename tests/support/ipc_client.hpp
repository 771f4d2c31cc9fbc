// A client of the IPC socket in the test's own thread: pumped, never blocking, well-behaved or not.
#pragma once

#include "ipc/protocol.hpp"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace test
{

struct ipc_message {
    uint32_t type = 0;
    std::string payload;
};

class ipc_client
{
public:
    // Connects when it is pumped.
    explicit ipc_client(std::string socket_path);
    ~ipc_client();
    ipc_client(const ipc_client &) = delete;
    ipc_client &operator=(const ipc_client &) = delete;

    // Sends what is queued, reads what has arrived.
    void pump();
    // Reads nothing while it is false.
    bool reads = true;
    // Passes over null bytes in front of a frame.
    bool skip_nulls = false;

    // Queued until the socket takes them.
    void send_bytes(std::string_view bytes);
    void send(uint32_t type, std::string_view payload = {});
    [[nodiscard]] bool sent_all() const { return connected && to_send.empty(); }
    void vanish();

    // The other side has hung up.
    [[nodiscard]] bool hung_up() const { return ended; }
    // Whole frames, without those that were taken out.
    [[nodiscard]] const std::vector<ipc_message> &messages() const { return arrived; }
    // Codes of the events among them, in order.
    [[nodiscard]] std::vector<vnt_event> events() const;
    // The frames so far, which are forgotten.
    std::vector<ipc_message> take();
    // Bytes behind the last whole frame.
    [[nodiscard]] size_t left_over() const { return unparsed.size(); }
    // A descriptor that came, -1 for none. The caller owns it.
    int take_descriptor();

private:
    void connect();
    void send_some();
    void read_some();
    void parse();

    std::string path;
    int fd = -1;
    bool connected = false;
    bool ended = false;
    std::string to_send;
    std::string unparsed;
    std::vector<ipc_message> arrived;
    std::vector<int> descriptors;
};

// A frame as a client sends it.
std::string ipc_bytes(uint32_t type, std::string_view payload);

} // namespace test
