// A connection between a client and the compositor that breaks right after a chosen number of requests.
#pragma once

#include <array>
#include <cstddef>
#include <vector>

namespace test
{

class cut_line
{
public:
    // Carries this many requests and then breaks. Events pass freely until then.
    explicit cut_line(int requests);
    ~cut_line();
    cut_line(const cut_line &) = delete;
    cut_line &operator=(const cut_line &) = delete;

    // The side that connects to an end closes it.
    [[nodiscard]] int client_end() const { return ends[0]; }
    [[nodiscard]] int server_end() const { return ends[1]; }

    // Carries what is waiting in both directions. Never blocks.
    void pump();
    void cut(); // breaks the line now; does nothing if it is broken
    [[nodiscard]] bool is_cut() const { return left == 0; }
    [[nodiscard]] int carried() const { return requests_carried; }

private:
    void carry_requests();
    void carry_events();

    std::array<int, 2> ends; // for the client and the server
    int to_client, to_server; // the other sides of `ends`; closed when cut
    int left;
    int requests_carried = 0;
    std::array<char, 65536> waiting; // requests that have not been carried yet
    size_t filled = 0;
    std::vector<int> descriptors; // came with them
};

} // namespace test
