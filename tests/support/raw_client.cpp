#include "raw_client.hpp"

#include <array>
#include <cerrno>
#include <cstring>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

namespace test
{

namespace
{

constexpr uint16_t display_get_registry = 1, registry_bind = 0;
constexpr uint16_t event_error = 0, event_global = 0;
constexpr size_t header_size = 8;

uint32_t word_at(std::string_view bytes, size_t offset)
{
    uint32_t word = 0;
    memcpy(&word, bytes.substr(offset, sizeof word).data(), sizeof word);
    return word;
}

// A string argument is its length with the final null, then the text, padded to whole words.
std::string text_at(std::string_view body, size_t offset)
{
    const uint32_t length = word_at(body, offset);
    return std::string{body.substr(offset + 4, length > 0 ? length - 1 : 0)};
}

constexpr size_t most_descriptors = 4;

ssize_t send_with_descriptors(int socket, const char *bytes, size_t length, std::span<const int> fds)
{
    iovec piece{.iov_base = const_cast<char *>(bytes), .iov_len = length};
    alignas(cmsghdr) std::array<char, CMSG_SPACE(sizeof(int) * most_descriptors)> control{};
    msghdr message{};
    message.msg_iov = &piece;
    message.msg_iovlen = 1;
    if (!fds.empty()) {
        message.msg_control = control.data();
        message.msg_controllen = CMSG_SPACE(fds.size_bytes());
        cmsghdr *rights = CMSG_FIRSTHDR(&message);
        rights->cmsg_level = SOL_SOCKET;
        rights->cmsg_type = SCM_RIGHTS;
        rights->cmsg_len = CMSG_LEN(fds.size_bytes());
        memcpy(CMSG_DATA(rights), fds.data(), fds.size_bytes());
    }
    return sendmsg(socket, &message, MSG_NOSIGNAL | MSG_DONTWAIT);
}

} // namespace

raw_client::raw_client(int connection) : fd(connection)
{
    request(display, display_get_registry, {registry});
}

raw_client::~raw_client()
{
    close(fd);
}

void raw_client::append(std::vector<uint32_t> &requests, uint32_t object, uint16_t opcode,
                        std::span<const uint32_t> words)
{
    const auto size = uint32_t(header_size + words.size_bytes());
    requests.push_back(object);
    requests.push_back((size << 16) | opcode);
    requests.insert(requests.end(), words.begin(), words.end());
}

bool raw_client::request(uint32_t object, uint16_t opcode, std::initializer_list<uint32_t> words,
                         int descriptor) const
{
    std::vector<uint32_t> one;
    append(one, object, opcode, words);
    return send(one, descriptor >= 0 ? std::span<const int>{&descriptor, 1} : std::span<const int>{});
}

bool raw_client::send(const std::vector<uint32_t> &requests, std::span<const int> fds) const
{
    const auto *bytes = reinterpret_cast<const char *>(requests.data());
    size_t left = requests.size() * sizeof(uint32_t);
    while (left > 0) {
        const ssize_t sent = send_with_descriptors(fd, bytes, left, fds);
        if (sent < 0)
            return false;
        bytes += sent;
        left -= size_t(sent);
        fds = {};
    }
    return true;
}

uint32_t raw_client::bind(const std::string &interface, uint32_t version)
{
    EXPECT_TRUE(globals.contains(interface)) << interface;
    const uint32_t id = new_id();
    std::vector<uint32_t> words{globals[interface].name}, bytes;
    append_text(words, interface);
    words.insert(words.end(), {version, id});
    append(bytes, registry, registry_bind, words);
    send(bytes);
    return id;
}

void raw_client::append_text(std::vector<uint32_t> &words, std::string_view text)
{
    const size_t length = text.size() + 1;
    words.push_back(uint32_t(length));
    const size_t at = words.size();
    words.resize(at + (length + 3) / 4);
    memcpy(words.data() + at, text.data(), text.size());
}

std::map<std::string, uint32_t> raw_client::offered() const
{
    std::map<std::string, uint32_t> versions;
    for (const auto &[interface, g] : globals)
        versions[interface] = g.version;
    return versions;
}

void raw_client::take_event(uint32_t object, uint16_t opcode, std::string_view body)
{
    std::vector<uint32_t> &words = events[{object, opcode}];
    words.clear();
    for (size_t at = 0; at + sizeof(uint32_t) <= body.size(); at += sizeof(uint32_t))
        words.push_back(word_at(body, at));
    if (object == display && opcode == event_error)
        error_message = text_at(body, 8);
    else if (object == registry && opcode == event_global)
        globals[text_at(body, 4)] = {.name = word_at(body, 0), .version = word_at(body, body.size() - 4)};
}

const std::vector<uint32_t> *raw_client::heard(uint32_t object, uint16_t opcode)
{
    read();
    const auto found = events.find({object, opcode});
    return found != events.end() ? &found->second : nullptr;
}

void raw_client::read()
{
    std::array<char, 4096> bytes;
    ssize_t n = 0;
    while ((n = recv(fd, bytes.data(), bytes.size(), MSG_DONTWAIT)) > 0)
        unread.append(bytes.data(), size_t(n));
    has_closed |= n == 0 || (n < 0 && errno != EAGAIN);
    std::string_view rest = unread;
    while (rest.size() >= header_size) {
        const uint32_t size_and_opcode = word_at(rest, 4), size = size_and_opcode >> 16;
        if (size < header_size || rest.size() < size)
            break;
        take_event(word_at(rest, 0), uint16_t(size_and_opcode), rest.substr(header_size, size - header_size));
        rest.remove_prefix(size);
    }
    unread.erase(0, unread.size() - rest.size());
}

} // namespace test
