// A session in which random operations follow each other.
#pragma once

#include "desktop.hpp"
#include "wayland_layer.hpp"
#include "wayland_popup.hpp"

#include <list>
#include <optional>
#include <random>
#include <set>

namespace test
{

// Each operation makes its choices from its own seed, so that it makes the same ones in a shorter sequence.
class random_session : public desktop
{
public:
    enum class x11 : bool { without, with };

    void begin(x11 windows_of_x11);
    void end();
    void TestBody() override {}

    // Runs one operation and returns what it did.
    std::string step(unsigned seed);
    std::vector<std::string> broken();
    std::string picture_of_it() { return state(); }

private:
    int below(size_t limit) { return std::uniform_int_distribution<int>{0, int(limit) - 1}(random); }
    int sign() { return below(2) == 0 ? -1 : 1; }
    template <class List> auto &any_of(List &list) { return *std::next(list.begin(), below(list.size())); }
    vantore_workspace &any_workspace() { return workspace(1 + below(9)); }
    vantore_toplevel *any_mapped();

    std::string plug_output();
    std::string unplug_output();
    std::string visit_other_session();
    std::string open_window();
    std::string close_window();
    std::string trouble_window();
    std::string lose_client();
    std::string change_power();
    std::string display_steps();
    std::string change_display();
    std::string mirror_step();
    std::string move_pointer();
    std::string focus_window();
    std::string arrow_key();
    std::string change_stack();
    std::string change_layout();
    std::string change_workspace();
    std::string send_elsewhere();
    std::string mark_window();
    std::string change_state();
    std::string point();
    std::string use_button();
    std::string reload();
    std::string let_time_pass();
    std::string open_panel();
    std::string trouble_panel();
    std::string open_popup();
    std::string trouble_popup();
    void forget_parts_of(const window &owner);
    std::string open_x11_window();
    std::string trouble_x11_window();
    std::string lose_x11_client();
    std::string ask_for_state(x11_window &w);
    std::string change_title_bar();
    std::string await_frame();
    std::string use_switcher();
    wlr_box any_part_of_overview();
    std::string use_overview();
    std::string capture_window();
    std::string use_viewer(unsigned seed);
    bool can_be_seen(vantore_toplevel &t);

    struct operation {
        std::string (random_session::*run)();
        int weight;
    };
    static const operation operations[];

    std::mt19937 random;
    made_up_pointer *pointer = nullptr;
    made_up_keyboard *keyboard = nullptr;
    std::set<uint32_t> held; // buttons
    int next_output = 0;
    std::vector<std::string> plugged;
    std::vector<client *> clients;
    std::vector<window *> windows;
    std::list<layer_surface> panels;
    struct menu {
        menu(window &on, const placement &where) : parent(&on), object(on, where) {}
        const window *parent;
        popup object;
    };
    std::list<menu> menus;
    struct title_bar {
        explicit title_bar(window &of) : owner(&of), object(of) {}
        const window *owner;
        decoration object;
    };
    std::list<title_bar> title_bars;
    std::vector<std::string> broken_promises; // what operations found wrong themselves, a sentence each
    std::optional<ipc_client> viewer; // captures windows
    bool with_x11 = false;
    std::vector<x11_client *> x11_programs;
    struct x11_entry {
        x11_client *owner;
        x11_window *window;
        bool override_redirect;
    };
    std::vector<x11_entry> x11_windows;
};

} // namespace test
