#include "server_check.hpp"

#include "outputs/output.hpp"
#include "server.hpp"
#include "windows/toplevel.hpp"
#include "workspaces/workspace.hpp"

#include <algorithm>

namespace test
{

namespace
{

class checker
{
public:
    explicit checker(vantore_server &checked) : server(checked) {}

    std::vector<std::string> run()
    {
        check_workspaces();
        check_outputs();
        for (auto &t : each<&vantore_toplevel::link>(server.toplevels))
            check_window(t);
        return std::move(broken);
    }

private:
    void expect(bool holds, const std::string &rule)
    {
        if (!holds)
            broken.push_back(rule);
    }

    void check_workspaces()
    {
        int num = 0;
        for (auto &ws : each<&vantore_workspace::link>(server.workspaces)) {
            const std::string name = "workspace " + std::to_string(ws.num);
            expect(ws.num == ++num, name + " stands at its number");
            expect(ws.output == nullptr || ws.output->current_ws == &ws, name + "'s output points back");
            expect(ws.tree->node.enabled == (ws.output != nullptr), name + " is visible iff on an output");
            for (auto &t : each<&vantore_toplevel::ws_link>(ws.toplevels))
                expect(t.workspace == &ws, name + " lists only its own windows");
        }
        expect(num == 9, "there are nine workspaces");
    }

    void check_outputs()
    {
        for (auto &o : each<&vantore_output::link>(server.outputs)) {
            const std::string name = std::string{"output "} + output_name(o.wlr_output);
            expect(o.current_ws == nullptr || o.current_ws->output == &o, name + "'s workspace points back");
            expect(o.scene_output != nullptr, name + " shows the scene");
        }
    }

    void check_window(vantore_toplevel &t)
    {
        const std::string name = "window " + std::to_string(t.id);
        const wlr_box box = toplevel_box(t);
        expect(tl_mapped(t), name + " in the list is mapped");
        expect(t.workspace != nullptr, name + " has a workspace");
        expect(times_listed(t) == 1, name + " is on exactly one workspace list");
        expect(t.scene_tree->node.parent == toplevel_parent_tree(t), name + " hangs where it belongs");
        expect(box.width >= 1 && box.height >= 1, name + " has a size");
        expect(t.maximized == t.xdg_toplevel->scheduled.maximized, name + " knows whether it is maximized");
        const bool focused = server.seat->keyboard_state.focused_surface == tl_surface(t);
        expect(t.xdg_toplevel->scheduled.activated == focused, name + " is active iff it has the keyboard");
    }

    long times_listed(const vantore_toplevel &t)
    {
        long times = 0;
        for (auto &ws : each<&vantore_workspace::link>(server.workspaces))
            for (auto &other : each<&vantore_toplevel::ws_link>(ws.toplevels))
                times += &other == &t ? 1 : 0;
        return times;
    }

    vantore_server &server;
    std::vector<std::string> broken;
};

} // namespace

std::vector<std::string> server_check(vantore_server &server)
{
    return checker{server}.run();
}

} // namespace test
