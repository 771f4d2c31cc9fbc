// Random operations in a row, with every invariant checked after each. VANTORE_TEST_SEQUENCES asks for more
// sequences than the normal run's, VANTORE_TEST_SEED for one seed alone.

#include "support/desktop.hpp"

#include "outputs/power.hpp"
#include "support/server_check.hpp"
#include "workspaces/focus.hpp"
#include "workspaces/switch.hpp"

#include <random>

using testing::IsEmpty;

static constexpr int operations_in_a_sequence = 60;
static constexpr size_t most_outputs = 4;
static constexpr size_t most_clients = 8;

// The software rasterizer reads whole tiles, also behind the end of a picture that ends within one.
static int whole_tiles(int length)
{
    return length / 64 * 64;
}

struct random_session : test::desktop {
    int below(size_t limit) { return std::uniform_int_distribution<int>{0, int(limit) - 1}(random); }

    template <class List> auto &any_of(List &list) { return *std::next(list.begin(), below(list.size())); }

    std::string plug_or_unplug()
    {
        if (plugged.size() < most_outputs && below(2) == 0) {
            const std::string name = "out" + std::to_string(next_output++ % 6);
            if (std::ranges::contains(plugged, name))
                return "nothing";
            plugged.push_back(name);
            plug(name, whole_tiles(200 + below(1800)), whole_tiles(200 + below(1000)));
            return "plug " + name;
        }
        if (plugged.empty())
            return "nothing";
        const std::string name = any_of(plugged);
        std::erase(plugged, name);
        test::unplug(test::made_up(output(name).wlr_output));
        return "unplug " + name;
    }

    std::string open_window()
    {
        if (clients.size() >= most_clients || below(2) == 0) {
            if (clients.empty())
                return "nothing";
            open_on(*any_of(clients));
            return "open on an old client";
        }
        clients.push_back(&connect());
        open_on(*clients.back());
        return "open on a new client";
    }

    void open_on(test::client &c)
    {
        test::window &w = c.create_window(below(8) == 0 ? "vantore-clips-overlay" : "window");
        w.preferred = {1 + below(2500), 1 + below(1500)};
        if (below(3) == 0)
            w.request_maximize();
        w.open();
        windows.push_back(&w);
    }

    std::string trouble_window()
    {
        if (windows.empty())
            return "nothing";
        test::window *w = any_of(windows);
        switch (below(7)) {
        case 0:
            std::erase(windows, w);
            w->destroy();
            return "destroy";
        case 1:
            std::erase(windows, w);
            w->destroy_role();
            return "destroy the role";
        case 2:
            w->unmap();
            return "unmap";
        case 3:
            w->open();
            return "open again";
        case 4:
            w->request_maximize();
            return "maximize";
        case 5:
            w->request_unmaximize();
            return "unmaximize";
        default:
            w->request_fullscreen();
            return "fullscreen";
        }
    }

    std::string lose_client()
    {
        if (clients.empty())
            return "nothing";
        test::client *c = any_of(clients);
        std::erase(clients, c);
        std::erase_if(windows, [&](const test::window *w) { return &w->owner() == c; });
        c->vanish();
        return "vanish";
    }

    std::string command()
    {
        switch (below(6)) {
        case 4:
            goto_workspace(server, 1 + below(9));
            return "another workspace";
        case 5:
            if (vantore_output *o = current_output(server))
                output_set_current(*o, &workspace(1 + below(9)));
            return "pull a workspace";
        case 0:
            set_dpms(server, below(2) == 0);
            return "power";
        case 1:
            wlr_cursor_warp_closest(server.cursor, nullptr, below(3000), below(1000));
            return "move the pointer";
        case 2:
            focus_top_toplevel(server);
            return "focus the top";
        default:
            for (auto &t : each<&vantore_toplevel::link>(server.toplevels))
                if (toplevel_visible(t) && below(3) == 0)
                    return focus_toplevel_ex(&t, below(2) == 0), "focus";
            return "nothing";
        }
    }

    std::string step()
    {
        switch (below(8)) {
        case 0:
        case 1:
            return plug_or_unplug();
        case 2:
        case 3:
            return open_window();
        case 4:
        case 5:
            return trouble_window();
        case 6:
            return command();
        default:
            return below(3) == 0 ? lose_client() : command();
        }
    }

    void run(unsigned seed)
    {
        random.seed(seed);
        std::string done;
        for (int i = 0; i < operations_in_a_sequence; i++) {
            done += step() + "\n";
            if (below(2) == 0) // the others happen while messages are under way
                settle();
            ASSERT_THAT(test::server_check(server), IsEmpty()) << "seed " << seed << "\n" << done << state();
        }
    }

    std::mt19937 random;
    int next_output = 0;
    std::vector<std::string> plugged;
    std::vector<test::client *> clients;
    std::vector<test::window *> windows;
};

class random_operations : public random_session, public testing::WithParamInterface<unsigned>
{
};

TEST_P(random_operations, break_no_invariant)
{
    run(GetParam());
}

static std::vector<unsigned> seeds()
{
    if (const char *seed = getenv("VANTORE_TEST_SEED"))
        return {unsigned(strtoul(seed, nullptr, 10))};
    const char *wish = getenv("VANTORE_TEST_SEQUENCES");
    std::vector<unsigned> list(wish != nullptr ? strtoul(wish, nullptr, 10) : 20);
    for (unsigned i = 0; unsigned &seed : list)
        seed = ++i;
    return list;
}

INSTANTIATE_TEST_SUITE_P(seed, random_operations, testing::ValuesIn(seeds()));
