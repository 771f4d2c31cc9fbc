// A session in which hostile clients send random requests, valid ones and nearly valid ones, while a user and
// a well-behaved client go on with their work.
#pragma once

#include "desktop.hpp"
#include "raw_client.hpp"

#include <list>
#include <map>
#include <memory>
#include <random>
#include <set>
#include <string>
#include <vector>

namespace test
{

// Kinds of requests, as "interface.request".
using request_kinds = std::set<std::string>;

// Each operation makes its choices from its own seed, so that it makes the same ones in a shorter sequence.
class random_requests : public desktop
{
public:
    void begin();
    void end();
    void TestBody() override {}

    // Runs one operation and returns what it did.
    std::string step(unsigned seed);
    std::vector<std::string> broken();
    std::string picture_of_it() { return state(); }
    // Returns the kinds that hostile clients have sent in this session without being ended for it.
    [[nodiscard]] const request_kinds &taken() const { return kinds_taken; }

private:
    struct object {
        uint32_t id = 0; // 0 is none
        const wl_interface *interface = nullptr;
        int version = 0;
    };
    struct message {
        std::vector<uint32_t> words;
        std::vector<int> fds;
    };
    // A hostile client.
    struct peer {
        std::unique_ptr<raw_client> wire;
        wl_client *side = nullptr; // null once the compositor has let it go
        listener gone;
        std::map<uint32_t, uint32_t> configured; // the serial of each object's last configure event
        request_kinds sent; // in this step
    };

    int below(size_t limit) { return std::uniform_int_distribution<int>{0, int(limit) - 1}(random); }
    bool one_in(size_t chances) { return below(chances) == 0; }
    template <class List> auto &any_of(List &list) { return *std::next(list.begin(), below(list.size())); }

    peer &any_peer();
    void connect_peer(peer &p);
    static std::vector<object> objects_of(const peer &p);
    object any_object(const peer &p, std::string_view interface);
    static object object_of(const peer &p, uint32_t id); // none if the client does not have it

    // Arguments
    uint32_t any_number();
    uint32_t any_serial();
    std::string any_text();
    int any_descriptor();
    // Closes the descriptor later, and at the end.
    void keep(int fd);
    uint32_t any_argument_object(const peer &p, const wl_interface *wanted);
    bool lacks_argument(const peer &p, const wl_message &kind);
    message any_arguments(peer &p, const object &on, const wl_message &kind);
    bool sensible_arguments(peer &p, const object &on, const wl_message &kind, message &m);

    // Sends a request by its name and returns the object that it makes, or 0 if it makes none. The words are
    // the other arguments in their order; the new object takes its place by itself, if what stands before it
    // is one word each. Does nothing without an object to send it to.
    uint32_t ask(peer &p, const object &on, std::string_view request, std::vector<uint32_t> words = {});
    void send(peer &p, uint32_t id, uint16_t opcode, const message &m);
    // Returns 0 if the client has no wl_shm.
    uint32_t create_buffer(peer &p, int width, int height, uint32_t format);
    // Gives the surface a buffer of its own and commits it.
    void draw(peer &p, const object &surface, int width, int height);

    // Operations
    std::string request();
    std::string nearly_valid_request();
    std::string half_a_request();
    std::string bind_again();
    std::string leave(const peer &p);
    std::string lose_a_client();
    std::string open_window();
    std::string open_popup();
    std::string open_panel();
    std::string nest();
    std::string shrink_a_file();
    std::string move_pointer();
    std::string use_button();
    std::string use_key();
    std::string pass_time();
    std::string change_outputs();

    struct operation {
        std::string (random_requests::*run)();
        int weight;
    };
    static const operation operations[];
    static void log_message(void *data, wl_protocol_logger_type direction,
                            const wl_protocol_logger_message *message);

    std::mt19937 random;
    made_up_pointer *pointer = nullptr;
    made_up_keyboard *keyboard = nullptr;
    window *witness = nullptr;
    wl_protocol_logger *logger = nullptr;
    std::list<peer> peers;
    std::vector<int>
        kept; // our ends of pipes and sockets that a client has sent, and second descriptors of its files
    request_kinds kinds_taken;
    bool second_output = false;
    long last_step_ms = 0; // of this thread's processor time
};

} // namespace test
