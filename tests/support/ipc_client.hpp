// A client of the IPC socket in the test's own thread. It is pumped and never blocks, and it may misbehave.
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
    // It connects when it is pumped.
    explicit ipc_client(std::string socket_path);
    ~ipc_client();
    ipc_client(const ipc_client &) = delete;
    ipc_client &operator=(const ipc_client &) = delete;

    // Sends what is queued and reads what has arrived.
    void pump();
    // While this is false, it reads nothing.
    bool reads = true;
    // Skips null bytes in front of a frame.
    bool skip_nulls = false;

    // Queues the bytes until the socket takes them.
    void send_bytes(std::string_view bytes);
    void send(uint32_t type, std::string_view payload = {});
    [[nodiscard]] bool sent_all() const { return connected && to_send.empty(); }
    void vanish();

    // Returns true once the other side has hung up.
    [[nodiscard]] bool hung_up() const { return ended; }
    // Returns the whole frames that have arrived since the last take().
    [[nodiscard]] const std::vector<ipc_message> &messages() const { return arrived; }
    // Returns the codes of the events among them, in order.
    [[nodiscard]] std::vector<vnt_event> events() const;
    // Returns the same frames and forgets them.
    std::vector<ipc_message> take();
    // Returns how many bytes have arrived after the last whole frame.
    [[nodiscard]] size_t left_over() const { return unparsed.size(); }
    // Returns a descriptor that arrived, which the caller then owns, or -1 if there is none.
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

// Returns a frame as a client sends it.
std::string ipc_bytes(uint32_t type, std::string_view payload);

} // namespace test
