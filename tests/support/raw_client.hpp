// A client that writes the bytes of the Wayland protocol itself, so that a test can send what no client
// library would send. It reads only what it must: the globals, and the error that ends it.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <map>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace test
{

class raw_client
{
public:
    // Owns the descriptor, one end of a socket pair.
    explicit raw_client(int connection);
    ~raw_client();
    raw_client(const raw_client &) = delete;
    raw_client &operator=(const raw_client &) = delete;

    static constexpr uint32_t display = 1, registry = 2;

    uint32_t new_id() { return ++last_id; }
    // A request with words of 32 bits, and maybe a descriptor, which stays the caller's. False when the
    // socket has no room, or has been closed by the other end.
    bool request(uint32_t object, uint16_t opcode, std::initializer_list<uint32_t> words, int fd = -1);
    // Many requests at once, which append() has collected. The descriptors go with their first byte.
    static void append(std::vector<uint32_t> &requests, uint32_t object, uint16_t opcode,
                       std::initializer_list<uint32_t> words);
    bool send(const std::vector<uint32_t> &requests, std::span<const int> fds = {});
    // The new object of a global; fails the test when the global has not been announced.
    uint32_t bind(const std::string &interface, uint32_t version);

    // Takes what has come, without waiting.
    void read();
    [[nodiscard]] bool knows(const std::string &interface) const { return globals.contains(interface); }
    [[nodiscard]] size_t globals_known() const { return globals.size(); }
    // The message of the error that ended the connection; empty before.
    [[nodiscard]] const std::string &error() const { return error_message; }
    [[nodiscard]] bool closed() const { return has_closed; }

private:
    void take_event(uint32_t object, uint16_t opcode, std::string_view body);

    int fd;
    uint32_t last_id = registry;
    std::map<std::string, uint32_t> globals; // names in the registry, by interface
    std::string unread;
    std::string error_message;
    bool has_closed = false;
};

} // namespace test
