// A client that writes the bytes of the Wayland protocol itself, so that a test can send what no client
// library would send. It reads only the globals and the error that ends the connection.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <map>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace test
{

class raw_client
{
public:
    // Takes over the descriptor, which is one end of a socket pair.
    explicit raw_client(int connection);
    ~raw_client();
    raw_client(const raw_client &) = delete;
    raw_client &operator=(const raw_client &) = delete;

    static constexpr uint32_t display = 1, registry = 2;

    uint32_t new_id() { return ++last_id; }
    // Sends a request of 32-bit words, and maybe a descriptor, which stays the caller's. Returns false if the
    // socket has no room or the other end has closed it.
    bool request(uint32_t object, uint16_t opcode, std::initializer_list<uint32_t> words,
                 int descriptor = -1) const;
    // append() collects requests, and send() sends them all at once. The descriptors go with the first byte.
    static void append(std::vector<uint32_t> &requests, uint32_t object, uint16_t opcode,
                       std::span<const uint32_t> words);
    static void append(std::vector<uint32_t> &requests, uint32_t object, uint16_t opcode,
                       std::initializer_list<uint32_t> words)
    {
        append(requests, object, opcode, std::span{words.begin(), words.size()});
    }
    bool send(const std::vector<uint32_t> &requests, std::span<const int> fds = {}) const;
    // Returns the new object of a global. Fails the test if the global has not been announced.
    uint32_t bind(const std::string &interface, uint32_t version);
    // Adds a string argument: its length with the final null, then the text, padded to whole words.
    static void append_text(std::vector<uint32_t> &words, std::string_view text);

    // Reads what has arrived, without waiting.
    void read();
    [[nodiscard]] bool knows(const std::string &interface) const { return globals.contains(interface); }
    // Returns the highest version of each global that has been announced, by interface.
    [[nodiscard]] std::map<std::string, uint32_t> offered() const;
    [[nodiscard]] size_t globals_known() const { return globals.size(); }
    // Returns the message of the error that ended the connection, or an empty text before that.
    [[nodiscard]] const std::string &error() const { return error_message; }
    [[nodiscard]] bool closed() const { return has_closed; }
    // Reads what has arrived, and returns the words of the object's last event of this kind, or null without
    // one.
    const std::vector<uint32_t> *heard(uint32_t object, uint16_t opcode);

private:
    void take_event(uint32_t object, uint16_t opcode, std::string_view body);

    int fd;
    uint32_t last_id = registry;
    struct global {
        uint32_t name, version;
    };
    std::map<std::string, global> globals; // by interface
    std::string unread;
    std::map<std::pair<uint32_t, uint16_t>, std::vector<uint32_t>> events; // by object and opcode
    std::string error_message;
    bool has_closed = false;
};

} // namespace test
