// A connection between a client and the compositor that breaks after a number of requests, exactly there.
#pragma once

#include <array>
#include <cstddef>
#include <vector>

namespace test
{

class cut_line
{
public:
    // Carries so many requests. Events pass freely until then.
    explicit cut_line(int requests);
    ~cut_line();
    cut_line(const cut_line &) = delete;
    cut_line &operator=(const cut_line &) = delete;

    // Whoever is connected there closes it.
    [[nodiscard]] int client_end() const { return ends[0]; }
    [[nodiscard]] int server_end() const { return ends[1]; }

    // Carries what is waiting. Never blocks.
    void pump();
    void cut(); // now, if it has not been
    [[nodiscard]] bool is_cut() const { return left == 0; }
    [[nodiscard]] int carried() const { return requests_carried; }

private:
    void carry_requests();
    void carry_events();

    std::array<int, 2> ends; // outer
    int to_client, to_server; // inner; closed when cut
    int left;
    int requests_carried = 0;
    std::array<char, 65536> waiting; // requests whose end has not come yet
    size_t filled = 0;
    std::vector<int> descriptors; // that came with them
};

} // namespace test
