// The random operations of X11 programs and menus.

#include "random_session.hpp"

namespace test
{

static constexpr size_t most_x11_programs = 3;
static constexpr size_t most_x11_windows = 10;
static constexpr size_t most_menus = 6;

std::string random_session::open_popup()
{
    if (windows.empty() || menus.size() >= most_menus)
        return "nothing";
    window &parent = *any_of(windows);
    if (find_record(parent) == nullptr)
        return "nothing";
    const placement where{.x = below(400),
                          .y = below(300),
                          .size = {1 + below(600), 1 + below(400)},
                          .adjustment = unsigned(below(64))};
    menus.emplace_back(parent, where);
    return "open a menu";
}

std::string random_session::trouble_popup()
{
    if (menus.empty())
        return "nothing";
    const auto chosen = std::next(menus.begin(), below(menus.size()));
    switch (below(3)) {
    case 0:
        return menus.erase(chosen), "close a menu";
    case 1:
        return chosen->object.attach_nothing(), "unmap a menu";
    default:
        chosen->object.reposition({.x = below(400), .y = below(300)}, 7);
        return "move a menu";
    }
}

// Destroying a window before its menus and decorations would be a client's mistake.
void random_session::forget_parts_of(const window &owner)
{
    std::erase_if(menus, [&](const menu &m) { return m.parent == &owner; });
    std::erase_if(title_bars, [&](const title_bar &b) { return b.owner == &owner; });
}

std::string random_session::open_x11_window()
{
    if (!with_x11 || x11_windows.size() >= most_x11_windows)
        return "nothing";
    active_windows = activity::may_lag; // a menu takes the keyboard, and nobody tells the window that had it
    if (x11_programs.empty() || (x11_programs.size() < most_x11_programs && below(3) == 0))
        x11_programs.push_back(&connect_x11());
    x11_client *owner = any_of(x11_programs);
    const bool places_itself = below(4) == 0;
    x11_window &w = owner->create({.x = below(2500) - 300,
                                   .y = below(1500) - 300,
                                   .width = 1 + below(1500),
                                   .height = 1 + below(1000),
                                   .override_redirect = places_itself});
    if (below(4) == 0)
        w.without_title_bar();
    if (below(4) == 0 && !x11_windows.empty())
        w.transient_for(*any_of(x11_windows).window);
    w.map();
    x11_windows.push_back({owner, &w, places_itself});
    return "open an X11 window";
}

std::string random_session::ask_for_state(x11_window &w)
{
    const bool on = below(2) == 0;
    switch (below(4)) {
    case 0:
        return w.request_state(on, "FULLSCREEN"), "ask for X11 fullscreen";
    case 1:
        return w.request_state(on, "MAXIMIZED_VERT", "MAXIMIZED_HORZ"), "ask for X11 maximized";
    case 2:
        return w.request_state(on, "HIDDEN"), "ask for X11 hidden";
    default:
        on ? w.request_iconify() : w.request_normal();
        return "ask for an X11 icon";
    }
}

std::string random_session::trouble_x11_window()
{
    if (x11_windows.empty())
        return "nothing";
    const auto chosen = std::next(x11_windows.begin(), below(x11_windows.size()));
    x11_window &w = *chosen->window;
    switch (below(11)) {
    case 0:
        return w.unmap(), "unmap an X11 window";
    case 1:
        return w.map(), "map an X11 window";
    case 2:
        chosen->override_redirect = !chosen->override_redirect;
        w.override_redirect(chosen->override_redirect);
        w.move(below(500), below(500));
        return "change sides";
    case 3:
        return w.place(below(3000) - 500, below(2000) - 500, 1 + below(2500), 1 + below(1500)), "place it";
    case 4:
        return w.request_activate(), "ask for the focus";
    case 5:
        return w.urgency(below(2) == 0), "urgency";
    case 6:
        return w.request_drag(unsigned(below(9))), "ask for a drag";
    case 7:
        return w.fill(uint32_t(below(1 << 24))), "draw an X11 window";
    case 8:
        w.destroy();
        x11_windows.erase(chosen);
        return "destroy an X11 window";
    default:
        return ask_for_state(w);
    }
}

std::string random_session::lose_x11_client()
{
    if (x11_programs.empty())
        return "nothing";
    if (below(4) == 0 && x_server() != 0) {
        kill_x_server();
        advance_clock_ms(1);
        x11_programs.clear();
        x11_windows.clear();
        return "kill the X server";
    }
    x11_client *c = any_of(x11_programs);
    std::erase(x11_programs, c);
    std::erase_if(x11_windows, [&](const x11_entry &e) { return e.owner == c; });
    return c->vanish(), "an X11 client vanishes";
}

} // namespace test
