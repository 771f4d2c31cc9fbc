#include "random_session.hpp"

#include "input/overview.hpp"
#include "input/switcher.hpp"
#include "input/synthetic.hpp"
#include "outputs/displays.hpp"
#include "outputs/output.hpp"
#include "outputs/power.hpp"
#include "reload.hpp"
#include "server_check.hpp"
#include "session/lock.hpp"
#include "windows/attention.hpp"
#include "windows/fullscreen.hpp"
#include "windows/states.hpp"
#include "workspaces/arrange.hpp"
#include "workspaces/direction.hpp"
#include "workspaces/focus.hpp"
#include "workspaces/layout.hpp"
#include "workspaces/stacks.hpp"
#include "workspaces/switch.hpp"
#include "workspaces/tiles.hpp"
#include "workspaces/transfer.hpp"

#include <format>
#include <linux/input-event-codes.h>
#include <unistd.h>

namespace test
{

static constexpr size_t most_outputs = 3;
static constexpr size_t most_clients = 8;
static constexpr size_t most_windows = 24;
static constexpr size_t most_panels = 6;

void random_session::begin(x11 windows_of_x11)
{
    SetUp();
    pointer = &plug_pointer();
    keyboard = &plug_keyboard();
    with_x11 = windows_of_x11 == x11::with;
}

void random_session::end()
{
    viewer.reset();
    menus.clear();
    title_bars.clear();
    panels.clear();
    TearDown();
}

std::string random_session::plug_output()
{
    if (plugged.size() >= most_outputs)
        return "nothing";
    const std::string name = "out" + std::to_string(next_output++ % 6);
    if (std::ranges::contains(plugged, name))
        return "nothing";
    plugged.push_back(name);
    plug(name, 200 + below(1800), 200 + below(1000));
    return "plug " + name;
}

std::string random_session::unplug_output()
{
    if (plugged.empty())
        return "nothing";
    const std::string name = any_of(plugged);
    std::erase(plugged, name);
    unplug(name);
    return "unplug " + name;
}

// The backend takes the outputs away while the user works in another session.
std::string random_session::visit_other_session()
{
    wlr_session session{};
    server.session = &session;
    std::vector<output_traits> displays;
    std::map<std::string, vantore_workspace *> shown;
    for (const std::string &name : plugged) {
        made_up_output &display = made_up(output(name).wlr_output);
        displays.push_back(display.traits);
        shown[name] = output(name).current_ws;
        test::unplug(display);
    }
    if (below(2) == 0)
        open_window();
    if (below(2) == 0)
        close_window();
    settle();
    session.active = true;
    std::ranges::shuffle(displays, random);
    for (const output_traits &display : displays)
        plug(display);
    handle_session_active(server);
    server.session = nullptr;
    for (const std::string &name : plugged)
        if (shown[name] != nullptr && output(name).current_ws != shown[name])
            broken_promises.push_back(name + " shows its workspace again");
    return "visit another session";
}

std::string random_session::open_window()
{
    if (windows.size() >= most_windows)
        return "nothing";
    if (clients.empty() || (clients.size() < most_clients && below(2) == 0))
        clients.push_back(&connect());
    window &w = any_of(clients)->create_window(below(12) == 0 ? "vantore-clips-overlay" : "window");
    w.preferred = {1 + below(2500), 1 + below(1500)};
    if (below(4) == 0)
        w.request_maximize();
    if (below(8) == 0) {
        w.min_size({300, 200});
        w.max_size({300, 200});
    }
    w.title("window"); // makes the toplevel
    if (below(4) == 0 && !windows.empty())
        if (window *parent = any_of(windows); &parent->owner() == &w.owner())
            w.parent(parent);
    windows.push_back(&w);
    const bool draws_its_own = below(3) != 0;
    if (!draws_its_own)
        title_bars.emplace_back(w);
    w.open();
    return draws_its_own ? "open" : "open with a title bar";
}

std::string random_session::close_window()
{
    if (windows.empty())
        return "nothing";
    window *w = any_of(windows);
    std::erase(windows, w);
    forget_parts_of(*w);
    if (below(3) == 0)
        return w->destroy_role(), "destroy the role";
    return w->destroy(), "destroy";
}

std::string random_session::trouble_window()
{
    if (windows.empty())
        return "nothing";
    window *w = any_of(windows);
    switch (below(8)) {
    case 0:
        return w->unmap(), "unmap";
    case 1:
        return w->open(), "open again";
    case 2:
        return w->request_maximize(), "maximize";
    case 3:
        return w->request_unmaximize(), "unmaximize";
    case 4:
        if (find_record(*w) == nullptr)
            return "nothing"; // the window has drawn nothing yet
        return w->fill(0xff00ff00), "draw";
    case 5:
        return w->request_unfullscreen(), "end fullscreen";
    case 6:
        return w->request_minimize(), "minimize";
    default: {
        const bool named = !plugged.empty() && below(2) == 0;
        w->request_fullscreen(named ? w->owner().output_named(any_of(plugged)) : nullptr);
        return "fullscreen";
    }
    }
}

std::string random_session::change_state()
{
    vantore_toplevel *t = any_mapped();
    if (t == nullptr)
        return "nothing";
    switch (below(3)) {
    case 0:
        return toplevel_set_fullscreen(*t, !t->fullscreen), "toggle fullscreen";
    case 1:
        return toplevel_minimize(*t), "hide a window";
    default:
        return toplevel_toggle_maximize(*t), "toggle maximized";
    }
}

std::string random_session::change_title_bar()
{
    if (title_bars.empty())
        return "nothing";
    decoration &chosen = any_of(title_bars).object;
    switch (below(3)) {
    case 0:
        return chosen.ask_nothing(), "leave the title bar to the compositor";
    case 1:
        return chosen.ask(CLIENT_SIDE), "want no title bar";
    default:
        return chosen.ask(SERVER_SIDE), "want a title bar";
    }
}

std::string random_session::lose_client()
{
    if (clients.empty() || below(3) != 0)
        return "nothing";
    client *c = any_of(clients);
    std::erase(clients, c);
    std::erase_if(windows, [&](const window *w) { return &w->owner() == c; });
    c->vanish();
    std::erase_if(menus, [&](const menu &m) { return &m.parent->owner() == c; });
    std::erase_if(title_bars, [&](const title_bar &b) { return &b.owner->owner() == c; });
    std::erase_if(panels, [&](const layer_surface &l) { return &l.owner() == c; });
    return "vanish";
}

std::string random_session::change_power()
{
    set_dpms(server, below(3) != 0);
    return "power";
}

std::string random_session::mirror_step()
{
    const vantore_toplevel *t = any_mapped();
    const auto *o = each<&vantore_output::link>(server.outputs).first();
    if (t != nullptr && below(2) == 0)
        return "mirror window " + std::to_string(t->id);
    if (o != nullptr && below(3) != 0)
        return std::string{"mirror output "} + o->wlr_output->name;
    return "mirror off";
}

// Returns one step that changes a display, or a few.
std::string random_session::display_steps()
{
    if (below(3) == 0)
        return mirror_step();
    static constexpr const char *words[]{"enable",           "transform 90",  "transform flipped-180",
                                         "transform normal", "scale 1",       "scale 1.5",
                                         "scale 2",          "mode 1024x768", "mode 800x600@60Hz"};
    if (below(4) == 0)
        return "disable";
    std::string steps =
        "position " + std::to_string(below(4000) - 2000) + " " + std::to_string(below(3000) - 1500);
    if (below(2) == 0)
        steps.clear();
    for (int i = below(3); i >= 0; i--)
        steps += std::string{" "} + words[size_t(below(std::size(words)))];
    return steps;
}

std::string random_session::change_display()
{
    std::vector<std::string> names;
    for (const auto &o : each<&vantore_output::link>(server.outputs))
        names.emplace_back(o.wlr_output->name);
    if (names.empty())
        return "nothing";
    if (below(4) != 0) {
        const std::string name = any_of(names), steps = display_steps();
        ipc_output_command(server, name, steps);
        return "output " + name + " " + steps;
    }
    std::string profile = "[all]\n";
    for (const std::string &name : names)
        profile += "output " + name + " enable " + (below(2) == 0 ? display_steps() : "") + "\n";
    world.write_config("displays.conf", profile);
    displays_autoapply(server);
    return "arrange displays:\n" + profile;
}

std::string random_session::move_pointer()
{
    synthetic_motion(server, below(5000), below(1000));
    return "move the pointer";
}

vantore_toplevel *random_session::any_mapped()
{
    const int count = wl_list_length(&server.toplevels);
    int index = count > 0 ? below(size_t(count)) : 0;
    for (auto &t : each<&vantore_toplevel::link>(server.toplevels))
        if (index-- == 0)
            return &t;
    return nullptr;
}

std::string random_session::focus_window()
{
    if (below(4) == 0)
        return focus_top_toplevel(server), "focus the top";
    vantore_toplevel *t = any_mapped();
    if (t == nullptr || !toplevel_visible(*t))
        return "nothing";
    return focus_toplevel_ex(t, below(2) == 0), "focus";
}

std::string random_session::arrow_key()
{
    const bool sideways = below(2) == 0;
    const int dx = sideways ? sign() : 0, dy = sideways ? 0 : sign();
    switch (below(3)) {
    case 0:
        return focus_direction(server, dx, dy), "focus by arrow";
    case 1:
        return move_direction(server, dx, dy), "move by arrow";
    default:
        return resize_direction(server, dx, dy), "resize by arrow";
    }
}

std::string random_session::change_stack()
{
    switch (below(5)) {
    case 0:
        return stack_toggle_focused(server), "toggle a stack";
    case 1:
        return stack_ungroup_focused(server), "leave a stack";
    case 2:
        return stack_cycle_focused(server), "cycle a stack";
    default: {
        vantore_toplevel *w = any_mapped(), *target = any_mapped();
        if (w == nullptr || !tile_participates(*target))
            return "nothing";
        return stack_join(*w, *target), "join a stack";
    }
    }
}

std::string random_session::change_layout()
{
    switch (below(5)) {
    case 0:
        return toggle_ws_layout(server), "toggle the layout";
    case 1:
        return cycle_tile_mode(server), "cycle the tile mode";
    case 2:
        return set_ws_layout(any_workspace(), VANTORE_LAYOUT_TILING), "tile a workspace";
    case 3:
        return set_ws_tile_mode(any_workspace(), vantore_tile_mode(below(4))), "set a tile mode";
    default:
        return toggle_float_focused(server), "toggle floating";
    }
}

std::string random_session::change_workspace()
{
    if (below(2) == 0)
        return goto_workspace(server, 1 + below(9)), "another workspace";
    if (vantore_output *o = current_output(server))
        return output_set_current(*o, &any_workspace()), "pull a workspace";
    return "nothing";
}

std::string random_session::send_elsewhere()
{
    switch (below(5)) {
    case 0:
        return move_ws_to_adjacent_output(server, sign()), "workspace to the next output";
    case 1:
        return move_focused_to_adjacent_output(server, sign()), "window to the next output";
    case 2:
        return move_focused_to_workspace(server, 1 + below(9)), "window to a workspace";
    case 3:
        if (vantore_toplevel *t = any_mapped())
            return move_toplevel_to_workspace(*t, 1 + below(9)), "any window to a workspace";
        return "nothing";
    default:
        if (plugged.empty())
            return "nothing";
        return move_workspace_to_output(&any_workspace(), output(any_of(plugged))), "workspace to an output";
    }
}

std::string random_session::mark_window()
{
    if (vantore_toplevel *t = any_mapped())
        return toplevel_mark_urgent(*t), "mark urgent";
    return "nothing";
}

std::string random_session::open_panel()
{
    if (clients.empty() || panels.size() >= most_panels)
        return "nothing";
    layer_traits traits{.on = layer{unsigned(below(4))}, .size = {below(300), below(200)}};
    if (below(2) == 0) {
        traits.name = "vantore-panel";
        traits.on = layer::top;
    }
    traits.anchor = unsigned(below(16));
    traits.zone = below(4) == 0 ? -1 : below(500);
    traits.margins = {.top = below(60) - 30, .bottom = below(60) - 30};
    if (below(3) == 0) {
        traits.keyboard = below(2) == 0 ? keyboard_wish::exclusive : keyboard_wish::on_demand;
        active_windows = activity::may_lag;
    }
    panels.emplace_back(*any_of(clients), traits);
    return "open a panel";
}

std::string random_session::trouble_panel()
{
    if (panels.empty())
        return "nothing";
    const auto panel = std::next(panels.begin(), below(panels.size()));
    switch (below(5)) {
    case 0:
        return panels.erase(panel), "destroy a panel";
    case 1:
        return panel->unmap(), "unmap a panel";
    case 2:
        return panel->commit(), "commit a panel";
    case 3:
        panel->move_to(layer{unsigned(below(4))});
        return panel->commit(), "move a panel to a layer";
    default:
        panel->zone(below(500) - 1);
        return panel->commit(), "change a panel's zone";
    }
}

// Returns the node that shows the surface, or null.
static const wlr_scene_node *node_of(const wlr_surface *surface, wlr_scene_tree &tree)
{
    const auto shows = [&](wlr_scene_node &node) {
        const wlr_scene_surface *shown =
            node.type == WLR_SCENE_NODE_BUFFER
                ? wlr_scene_surface_try_from_buffer(wlr_scene_buffer_from_node(&node))
                : nullptr;
        return shown != nullptr && shown->surface == surface;
    };
    for (auto &node : each<&wlr_scene_node::link>(tree.children)) {
        if (shows(node))
            return &node;
        if (node.type == WLR_SCENE_NODE_TREE)
            if (const wlr_scene_node *found = node_of(surface, *wlr_scene_tree_from_node(&node)))
                return found;
    }
    return nullptr;
}

bool random_session::can_be_seen(vantore_toplevel &t)
{
    const wlr_scene_node *node = toplevel_visible(t) ? node_of(tl_surface(t), *t.scene_tree) : nullptr;
    if (node == nullptr)
        return false;
    for (const auto &o : each<&vantore_output::link>(server.outputs)) {
        const wlr_box at = output_layout_box(o);
        const pixman_box32_t area{.x1 = at.x, .y1 = at.y, .x2 = at.x + at.width, .y2 = at.y + at.height};
        if (o.wlr_output->enabled &&
            pixman_region32_contains_rectangle(&node->WLR_PRIVATE.visible, &area) != PIXMAN_REGION_OUT)
            return true;
    }
    return false;
}

// A window that can be seen is told when to draw again, however little of it shows.
std::string random_session::await_frame()
{
    window *w = windows.empty() ? nullptr : any_of(windows);
    settle();
    vantore_toplevel *t = w != nullptr ? find_record(*w) : nullptr;
    if (t == nullptr || !can_be_seen(*t))
        return "nothing";
    const int before = w->frames();
    w->request_frame();
    if (!until([&] { return w->frames() > before; }))
        broken_promises.push_back("window " + std::to_string(t->id) + " gets frame callbacks");
    return "wait for a frame";
}

// The modifier is held in between, also while windows and outputs go.
std::string random_session::use_switcher()
{
    static constexpr std::array<uint32_t, 3> modifiers{WLR_MODIFIER_ALT, WLR_MODIFIER_LOGO,
                                                       WLR_MODIFIER_ALT | WLR_MODIFIER_SHIFT};
    if (below(3) != 0)
        return switcher_step(server, any_of(modifiers)), "step through windows";
    const bool cancels = below(2) == 0;
    return switcher_commit(server, cancels), cancels ? "leave the switcher" : "switch";
}

wlr_box random_session::any_part_of_overview()
{
    const vantore_overviewing &overview = server.overview;
    const int kind = below(3);
    if (kind == 0 && !overview.ws_items.empty())
        return overview.ws_items[size_t(below(overview.ws_items.size()))].box;
    if (kind == 1 && !overview.items.empty())
        return overview.items[size_t(below(overview.items.size()))].close_rect;
    if (!overview.items.empty())
        return overview.items[size_t(below(overview.items.size()))].rect;
    return output_layout_box(*overview.output);
}

// Buttons are pressed and released by other operations too.
std::string random_session::use_overview()
{
    static constexpr std::array<uint32_t, 9> keys{KEY_LEFT, KEY_RIGHT, KEY_UP,    KEY_DOWN, KEY_TAB,
                                                  KEY_TAB,  KEY_ENTER, KEY_SPACE, KEY_ESC};
    if (!server.overview.active || below(8) == 0)
        return overview_toggle(server), "toggle the overview";
    if (below(10) == 0) {
        session_lock_begin(server);
        server.locked = false;
        return "lock and unlock";
    }
    if (below(3) == 0)
        return keyboard->tap(any_of(keys)), "a key in the overview";
    const wlr_box at = any_part_of_overview();
    point_at(*pointer, at.x + at.width / 2.0, at.y + at.height / 2.0);
    return below(2) == 0 ? use_button() + " in the overview" : "point in the overview";
}

const random_session::operation random_session::operations[]{
    {&random_session::plug_output, 2},     {&random_session::unplug_output, 2},
    {&random_session::open_window, 6},     {&random_session::close_window, 3},
    {&random_session::trouble_window, 5},  {&random_session::lose_client, 1},
    {&random_session::change_power, 1},    {&random_session::move_pointer, 2},
    {&random_session::change_display, 2},  {&random_session::focus_window, 2},
    {&random_session::arrow_key, 5},       {&random_session::change_stack, 5},
    {&random_session::change_layout, 4},   {&random_session::change_workspace, 4},
    {&random_session::send_elsewhere, 4},  {&random_session::mark_window, 1},
    {&random_session::point, 4},           {&random_session::use_button, 6},
    {&random_session::reload, 3},          {&random_session::open_panel, 2},
    {&random_session::trouble_panel, 3},   {&random_session::change_state, 3},
    {&random_session::open_popup, 2},      {&random_session::trouble_popup, 2},
    {&random_session::open_x11_window, 4}, {&random_session::trouble_x11_window, 7},
    {&random_session::lose_x11_client, 1}, {&random_session::change_title_bar, 2},
    {&random_session::await_frame, 2},     {&random_session::visit_other_session, 2},
    {&random_session::let_time_pass, 3},   {&random_session::use_switcher, 4},
    {&random_session::use_overview, 8},
};

// Points at any place in the layout or at a part of a window. A drag may be under way.
std::string random_session::point()
{
    vantore_toplevel *t = any_mapped();
    if (t == nullptr || below(3) == 0)
        return point_at(*pointer, below(3000), below(1000)), "point somewhere";
    // The point lies on a title bar or tab, on a border, or in the content.
    const wlr_box box = toplevel_box(*t);
    const int dx = below(2) == 0 ? below(size_t(box.width)) : below(2) * (box.width - 1);
    const int dy = below(2) == 0 ? -1 - below(30) : below(size_t(box.height));
    return point_at(*pointer, box.x + dx, box.y + dy), "point at a window";
}

std::string random_session::use_button()
{
    const uint32_t button = below(4) == 0 ? BTN_RIGHT : BTN_LEFT;
    if (held.contains(button)) {
        held.erase(button);
        pointer->release(button);
        return "release";
    }
    held.insert(button);
    const bool with_logo = below(3) == 0;
    if (with_logo)
        keyboard->press(KEY_LEFTMETA);
    pointer->press(button);
    if (with_logo)
        keyboard->release(KEY_LEFTMETA);
    return "press";
}

std::string random_session::reload()
{
    const int gaps = below(30);
    const bool tiler = below(2) == 0, effects = below(3) != 0, blur = below(3) != 0;
    world.write_config(
        "compositor.conf",
        std::format("gaps = {}\ntiler = {}\nforce_effects = {}\nblur = {}\ndim_inactive = 0.{}\n", gaps,
                    tiler, effects, blur, below(3)));
    config_reload(server);
    return effects && blur ? "reload with blur" : "reload";
}

std::string random_session::let_time_pass()
{
    advance_clock_ms(1 + below(200)); // an animation lasts less
    return "let time pass";
}

// Asks for a window's pictures in graphics memory. A subscription takes over from the one before.
std::string random_session::capture_window()
{
    const vantore_toplevel *t = any_mapped();
    const std::string id = std::to_string(t != nullptr ? t->id : 0);
    if (!viewer || viewer->hung_up())
        viewer.emplace(server.ipc.ipc_path.data());
    switch (below(6)) {
    case 0:
        return viewer->vanish(), "the viewer hangs up";
    case 1:
        viewer->reads = !viewer->reads;
        return viewer->reads ? "the viewer reads again" : "the viewer does not read";
    case 2:
        return viewer->send(VNT_MSG_CAPTURE_DMABUF, id), "capture a window";
    default:
        viewer->send(VNT_MSG_CAPTURE_SUBSCRIBE, id + " " + std::to_string(below(600)));
        return "follow a window";
    }
}

// Now and then a program captures a window. It chooses from numbers of its own, so that the operations make
// the same choices with it and without it.
std::string random_session::use_viewer(unsigned seed)
{
    const std::mt19937 for_operations = std::exchange(random, std::mt19937{~seed});
    const std::string done = below(4) == 0 ? ", " + capture_window() : "";
    random = for_operations;
    if (!viewer)
        return done;
    viewer->pump();
    viewer->take();
    for (int fd = 0; (fd = viewer->take_descriptor()) >= 0;)
        close(fd);
    return done;
}

std::string random_session::step(unsigned seed)
{
    random.seed(seed);
    int total = 0;
    for (const operation &o : operations)
        total += o.weight;
    int chosen = below(size_t(total));
    const operation *at = operations;
    while (chosen >= at->weight)
        chosen -= (at++)->weight;
    std::string done = (this->*at->run)();
    done += use_viewer(seed);
    if (below(2) == 0) // otherwise the next operation happens while messages are under way
        settle();
    return done;
}

// Tiles are certain to be in their places only after an arrangement. Any operation may be followed by one, so
// this arranges them first.
std::vector<std::string> random_session::broken()
{
    std::vector<std::string> rules = server_check(server, active_windows);
    std::ranges::move(usable_check(server), std::back_inserter(rules));
    std::ranges::move(lookup_check(server), std::back_inserter(rules));
    std::ranges::move(broken_promises, std::back_inserter(rules));
    std::ranges::move(pointer_check(server), std::back_inserter(rules));
    for (auto &ws : each<&vantore_workspace::link>(server.workspaces))
        arrange_workspace(&ws);
    std::ranges::move(tiles_check(server), std::back_inserter(rules));
    return rules;
}

} // namespace test
