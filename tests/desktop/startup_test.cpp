// The start, step by step, and the orderly end.

#include "startup.hpp"

#include "config/settings.hpp"
#include "graphics.hpp"
#include "scene_graph.hpp"
#include "support/desktop.hpp"

#include <csignal>
#include <dlfcn.h>
#include <fstream>
#include <ranges>

using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

using unstarted_desktop = test::unstarted_desktop;
using desktop = test::desktop;

namespace
{

std::string environment(const char *name)
{
    const char *value = getenv(name);
    return value != nullptr ? value : "(unset)";
}

TEST(startup_table, names_its_steps_in_order)
{
    std::vector<std::string_view> names;
    for (const startup_step &step : startup_steps())
        names.push_back(step.name);
    EXPECT_THAT(names,
                ElementsAre("log", "single-instance state", "descriptors", "display", "memory", "signals",
                            "safe graphics", "workspaces, which outlive the outputs", "outputs file",
                            "backend", "headless backend", "login session", "renderer", "render node",
                            "allocator", "frame measurements", "cursor, which outlives the scene",
                            "listeners", "first globals", "explicit sync", "scene", "scene graph",
                            "configuration", "reduced motion", "presentation time", "accent", "workspaces",
                            "workspaces' configuration", "hangup", "wallpapers", "animation timer",
                            "modifier timer", "on-screen displays", "frames of covered windows",
                            "resting pointer", "outputs", "xdg shell", "XWayland", "decoration manager",
                            "layer shell", "cursor", "seat", "last globals", "clients", "socket and backend",
                            "announcement", "IPC", "autostart"));
}

TEST(startup_table, ends_the_socket_the_clients_the_x_server_and_the_scene_before_what_they_need)
{
    std::vector<std::string_view> names;
    for (const startup_step &step : std::views::reverse(startup_steps()))
        if (step.end != nullptr)
            names.push_back(step.name);
    EXPECT_THAT(names, ElementsAre("IPC", "socket and backend", "clients", "XWayland", "resting pointer",
                                   "frames of covered windows", "on-screen displays", "modifier timer",
                                   "animation timer", "wallpapers", "hangup", "scene", "first globals",
                                   "listeners", "cursor, which outlives the scene", "frame measurements",
                                   "allocator", "renderer", "login session", "backend", "outputs file",
                                   "workspaces, which outlive the outputs", "memory", "display"));
}

TEST_F(desktop, offers_exactly_the_globals_that_somebody_serves_in_their_order_and_version)
{
    std::vector<std::string> offered;
    for (const test::global &g : connect().globals())
        offered.push_back(g.interface + " " + std::to_string(g.version));
    EXPECT_THAT(offered,
                ElementsAre("wl_shm 2", "wl_compositor 5", "wl_subcompositor 1", "wl_data_device_manager 3",
                            "zwp_primary_selection_device_manager_v1 1", "xdg_activation_v1 1",
                            "wp_viewporter 1", "wp_fractional_scale_manager_v1 1", "wp_alpha_modifier_v1 1",
                            "wp_single_pixel_buffer_manager_v1 1", "wp_security_context_manager_v1 1",
                            "wp_cursor_shape_manager_v1 1", "zwp_keyboard_shortcuts_inhibit_manager_v1 1",
                            "zxdg_exporter_v1 1", "zxdg_importer_v1 1", "zxdg_exporter_v2 1",
                            "zxdg_importer_v2 1", "wp_tearing_control_manager_v1 1",
                            "wp_content_type_manager_v1 1", "zwp_virtual_keyboard_manager_v1 1",
                            "zwlr_virtual_pointer_manager_v1 2", "wp_presentation 2", "xdg_wm_base 3",
                            "xwayland_shell_v1 1", "zxdg_decoration_manager_v1 1", "zwlr_layer_shell_v1 4",
                            "wl_seat 9", "zwlr_screencopy_manager_v1 3", "zwlr_export_dmabuf_manager_v1 1",
                            "zwlr_data_control_manager_v1 2", "zwlr_gamma_control_manager_v1 1",
                            "zxdg_output_manager_v1 3", "zwp_relative_pointer_manager_v1 1",
                            "zwp_pointer_constraints_v1 1"));
}

bool offers(const test::client &c, std::string_view interface)
{
    return std::ranges::contains(c.globals(), interface, &test::global::interface);
}

// Two libraries define the scene's functions, but only one of them makes scenes with effects.
TEST(linkage, takes_the_scene_from_the_library_with_effects)
{
    Dl_info info{};
    ASSERT_NE(dladdr(reinterpret_cast<void *>(&wlr_scene_create), &info), 0);
    EXPECT_THAT(info.dli_fname, HasSubstr("scenefx"));
}

TEST_F(desktop, stacks_its_eleven_scene_nodes_in_order)
{
    const std::vector<wlr_scene_node *> expected{
        &server.layers[0]->node, &server.layers[1]->node,      &server.toplevel_tree->node,
        &server.drag_hint->node, &server.layers[2]->node,      &server.fullscreen_tree->node,
        &server.layers[3]->node, &server.snap_preview->node,   &server.unmanaged->node,
        &server.lock_tree->node, &server.drag_icon_tree->node,
    };
    std::vector<wlr_scene_node *> actual;
    wlr_scene_node *node = nullptr;
    wl_list_for_each(node, &server.scene->tree.children, link)
    {
        actual.push_back(node);
    }
    EXPECT_EQ(actual, expected);
}

TEST_F(desktop, starts_with_the_lock_tree_and_the_hints_hidden_and_everything_else_shown)
{
    for (const auto *tree :
         {server.layers[0], server.layers[1], server.layers[2], server.layers[3], server.toplevel_tree,
          server.fullscreen_tree, server.unmanaged, server.drag_icon_tree})
        EXPECT_TRUE(tree->node.enabled);
    EXPECT_FALSE(server.lock_tree->node.enabled);
    EXPECT_FALSE(server.drag_hint->node.enabled);
    EXPECT_FALSE(server.snap_preview->node.enabled);
}

std::vector<float> color_of(const wlr_scene_rect *rect)
{
    return {rect->color, rect->color + 4};
}

TEST(scene_graph, colours_its_hints)
{
    vantore_server bare;
    bare.scene = wlr_scene_create();
    ASSERT_TRUE(scene_graph_create(bare));
    EXPECT_THAT(color_of(bare.drag_hint), ElementsAre(0.3F, 0.55F, 0.95F, 0.35F));
    EXPECT_THAT(color_of(bare.snap_preview), ElementsAre(0.3F, 0.55F, 0.95F, 0.18F));
    g_accent_set = false;
    g_accent = {1, 0, 0, 1};
    scene_graph_apply_accent(bare);
    EXPECT_THAT(color_of(bare.snap_preview), ElementsAre(0.3F, 0.55F, 0.95F, 0.18F));
    g_accent_set = true;
    scene_graph_apply_accent(bare);
    EXPECT_THAT(color_of(bare.snap_preview), ElementsAre(1, 0, 0, 0.18F));
    wlr_scene_node_destroy(&bare.scene->tree.node);
}

TEST_F(desktop, gives_the_snap_preview_the_accent)
{
    EXPECT_THAT(color_of(server.snap_preview), ElementsAre(76 / 255.0F, 191 / 255.0F, 115 / 255.0F, 0.18F));
}

TEST_F(desktop, lays_a_backdrop_larger_than_any_layout_under_everything)
{
    wlr_scene_node *lowest = nullptr;
    wl_list_for_each(lowest, &server.layers[0]->children, link)
    {
        break;
    }
    ASSERT_EQ(lowest->type, WLR_SCENE_NODE_RECT);
    const wlr_scene_rect *backdrop = wlr_scene_rect_from_node(lowest);
    EXPECT_EQ(backdrop->width, 16384);
    EXPECT_EQ(backdrop->height, 16384);
    EXPECT_THAT(color_of(backdrop), ElementsAre(0.06F, 0.07F, 0.10F, 1.0F));
}

TEST_F(desktop, has_nine_workspaces_named_by_number)
{
    int num = 0;
    for (auto &ws : each<&vantore_workspace::link>(server.workspaces)) {
        EXPECT_EQ(ws.num, ++num);
        EXPECT_EQ(std::string{ws.name.data()}, std::to_string(num));
        EXPECT_EQ(ws.layout, VANTORE_LAYOUT_FLOATING);
        EXPECT_DOUBLE_EQ(ws.master_ratio, 0.55);
        EXPECT_FALSE(ws.tree->node.enabled);
        EXPECT_EQ(ws.tree->node.parent, server.toplevel_tree);
    }
    EXPECT_EQ(num, 9);
}

TEST_F(unstarted_desktop, safe_graphics_on_the_kernel_command_line_turns_effects_off)
{
    world.kernel_command_line("quiet splash vantore.safe=1 ro");
    unsetenv("WLR_RENDERER_ALLOW_SOFTWARE");
    g_soft_render = false;
    safe_graphics_detect();
    EXPECT_TRUE(g_soft_render); // before anybody asks for the renderer's device
    start();
    EXPECT_TRUE(g_safe_graphics);
    EXPECT_EQ(environment("WLR_RENDERER_ALLOW_SOFTWARE"), "1");
    EXPECT_EQ(environment("LIBGL_ALWAYS_SOFTWARE"), "1");
    EXPECT_EQ(environment("VANTORE_REDUCED_MOTION"), "1");
    EXPECT_THAT(world.log(), HasSubstr("vantore-comp: SAFE GRAPHICS mode (vantore.safe=1) — software "
                                       "rendering, effects off\n"));
}

TEST_F(unstarted_desktop, other_kernel_command_lines_do_not)
{
    world.kernel_command_line("quiet vantore.safe=0");
    start();
    EXPECT_FALSE(g_safe_graphics);
    EXPECT_EQ(environment("LIBGL_ALWAYS_SOFTWARE"), "(unset)");
    EXPECT_THAT(world.log(), Not(HasSubstr("SAFE GRAPHICS")));
}

TEST_F(unstarted_desktop, the_kernel_command_line_is_searched_in_its_first_4095_bytes)
{
    world.kernel_command_line(std::string(4095 - 14, 'x') + "vantore.safe=1");
    EXPECT_TRUE(cmdline_has("vantore.safe=1"));
    world.kernel_command_line(std::string(4096 - 14, 'x') + "vantore.safe=1");
    EXPECT_FALSE(cmdline_has("vantore.safe=1"));
}

TEST_F(unstarted_desktop, a_missing_kernel_command_line_holds_nothing)
{
    EXPECT_FALSE(cmdline_has("vantore.safe=1"));
}

TEST_F(unstarted_desktop, any_value_of_the_variable_allows_software_rendering)
{
    unsetenv("WLR_RENDERER_ALLOW_SOFTWARE");
    setenv("VANTORE_ALLOW_SOFTWARE", "0", 1);
    start();
    EXPECT_EQ(environment("WLR_RENDERER_ALLOW_SOFTWARE"), "1");
    EXPECT_THAT(world.log(), HasSubstr("vantore-comp: VANTORE_ALLOW_SOFTWARE set — permitting software GL "
                                       "(llvmpipe); per-pixel effects auto-disabled\n"));
}

TEST_F(desktop, a_software_renderer_is_noticed_and_logged)
{
    EXPECT_TRUE(g_soft_render);
    EXPECT_FALSE(g_safe_graphics);
    EXPECT_THAT(world.log(), HasSubstr("[ERROR] [comp/graphics.cpp:"));
    EXPECT_THAT(world.log(), HasSubstr("vantore-comp: software renderer detected — shadows/blur/animations "
                                       "disabled (force_effects = true overrides)\n"));
    EXPECT_EQ(environment("VANTORE_REDUCED_MOTION"), "1");
    EXPECT_EQ(environment("VNT_RENDER_NODE"), "(unset)");
}

TEST_F(desktop, a_software_renderer_with_a_device_is_noticed_by_its_name)
{
    g_soft_render = false; // as if it had one
    notice_software_renderer(server);
    EXPECT_TRUE(g_soft_render);
}

TEST(renderers, are_known_by_their_names)
{
    EXPECT_TRUE(is_software_renderer("llvmpipe (LLVM 21.1.0, 256 bits)"));
    EXPECT_TRUE(is_software_renderer("softpipe"));
    EXPECT_TRUE(is_software_renderer("Software Rasterizer, SwRast"));
    EXPECT_TRUE(is_software_renderer("ANGLE (Google, Vulkan 1.3 (SwiftShader Device))"));
    EXPECT_FALSE(is_software_renderer("AMD Radeon RX 7800 XT (radeonsi, navi32)"));
    EXPECT_FALSE(is_software_renderer("virgl (NVIDIA GeForce RTX 3060)"));
    EXPECT_FALSE(is_software_renderer(""));
}

struct motion_case {
    bool animations, safe, soft, force;
    const char *reduced;
};

class reduced_motion : public testing::TestWithParam<motion_case>
{
};

TEST_P(reduced_motion, is_exported_for_the_programs_that_we_start)
{
    test::isolation world;
    g_animations = GetParam().animations;
    g_safe_graphics = GetParam().safe;
    g_soft_render = GetParam().soft;
    g_force_effects = GetParam().force;
    setenv("VANTORE_REDUCED_MOTION", "stale", 1);
    export_reduced_motion();
    EXPECT_EQ(environment("VANTORE_REDUCED_MOTION"), GetParam().reduced);
}

INSTANTIATE_TEST_SUITE_P(
    all, reduced_motion,
    testing::Values(motion_case{true, false, false, false, "0"}, motion_case{false, false, false, false, "1"},
                    motion_case{true, true, false, false, "1"}, motion_case{true, false, true, false, "1"},
                    motion_case{true, false, true, true, "0"}, motion_case{true, true, true, true, "1"},
                    motion_case{false, false, true, true, "1"}));

struct cursor_size_case {
    const char *variable;
    uint32_t size;
};

class cursor_size : public unstarted_desktop, public testing::WithParamInterface<cursor_size_case>
{
};

TEST_P(cursor_size, comes_from_the_environment_where_it_is_a_size)
{
    if (GetParam().variable != nullptr)
        setenv("XCURSOR_SIZE", GetParam().variable, 1);
    start();
    EXPECT_EQ(server.xcursor_mgr->size, GetParam().size);
}

INSTANTIATE_TEST_SUITE_P(all, cursor_size,
                         testing::Values(cursor_size_case{nullptr, 24}, cursor_size_case{"48", 48},
                                         cursor_size_case{"0", 24}, cursor_size_case{"-3", 24},
                                         cursor_size_case{"large", 24}, cursor_size_case{"", 24},
                                         cursor_size_case{"32px", 32}, cursor_size_case{"4294967296", 1024}));

TEST_F(unstarted_desktop, the_environment_names_the_session_and_keeps_what_the_login_chose)
{
    setenv("XDG_CURRENT_DESKTOP", "Mine", 1);
    setenv("GNOME_DESKTOP_SESSION_ID", "mine too", 1);
    setenv("XDG_SESSION_TYPE", "tty", 1);
    setenv("WAYLAND_DISPLAY", "somebody-elses", 1);
    start();
    EXPECT_EQ(environment("XDG_CURRENT_DESKTOP"), "Mine");
    EXPECT_EQ(environment("GNOME_DESKTOP_SESSION_ID"), "mine too");
    EXPECT_EQ(environment("XDG_SESSION_TYPE"), "tty");
    EXPECT_EQ(environment("WAYLAND_DISPLAY"), "wayland-0");
}

TEST_F(desktop, the_environment_is_filled_where_it_was_empty)
{
    EXPECT_EQ(environment("XDG_CURRENT_DESKTOP"), "Vantore:GNOME");
    EXPECT_EQ(environment("GNOME_DESKTOP_SESSION_ID"), "this-is-deprecated");
    EXPECT_EQ(environment("XDG_SESSION_TYPE"), "wayland");
}

TEST_F(desktop, the_session_bus_is_told_of_the_display)
{
    EXPECT_THAT(world.spawned(), ElementsAre("command -v dbus-update-activation-environment >/dev/null && "
                                             "dbus-update-activation-environment --systemd WAYLAND_DISPLAY "
                                             "XDG_CURRENT_DESKTOP XDG_SESSION_TYPE"));
}

TEST_F(unstarted_desktop, the_users_programs_are_started_last)
{
    world.write_config("autostart.conf", "one # of the file\ntwo\n");
    const auto entries = world.config_directory().parent_path() / "autostart";
    std::filesystem::create_directory(entries);
    std::ofstream{entries / "three.desktop"} << "[Desktop Entry]\nExec=three %U\n";
    const auto before = ptrdiff_t(world.spawned().size());
    start();
    const std::vector<std::string> started{world.spawned().begin() + before, world.spawned().end()};
    EXPECT_THAT(started, ElementsAre(HasSubstr("dbus-update-activation-environment"), "one", "two", "three"));
}

TEST_F(desktop, the_banner_names_the_socket_and_the_keys)
{
    EXPECT_THAT(
        world.log(),
        HasSubstr("vantore-comp M4c running — WAYLAND_DISPLAY=wayland-0 (Super+arrows focus, +Shift move, "
                  "+Ctrl resize; Super+Space float, Super+T tile; Super+1..9 ws, +Shift move-to-ws; "
                  "Super+Enter foot, Super+q close, Super+f/m fullscreen/max; Super+drag move, "
                  "Super+right-drag resize; Super+Shift+Esc quit)\n"));
    EXPECT_THAT(world.log(), HasSubstr("presentation-time advertised (presentation_time=true)\n"));
    EXPECT_THAT(world.log(), Not(HasSubstr("explicit sync")));
}

TEST_F(unstarted_desktop, exact_frame_times_are_not_offered_where_the_configuration_says_no)
{
    config("presentation_time = false\n");
    start();
    EXPECT_FALSE(offers(connect(), "wp_presentation"));
    EXPECT_THAT(world.log(), Not(HasSubstr("presentation-time")));
    config("presentation_time = true\n");
    EXPECT_FALSE(offers(connect(), "wp_presentation")) << "only the start reads it";
}

TEST_F(desktop, the_outputs_file_is_there_from_the_start_and_empty_without_outputs)
{
    std::ifstream file{world.runtime_directory() / "vantore-outputs"};
    ASSERT_TRUE(file);
    EXPECT_EQ(file.peek(), EOF);
}

TEST_F(desktop, half_a_second_after_the_start_the_outputs_are_counted)
{
    plug("A", 800, 600);
    advance_clock_ms(499);
    settle();
    EXPECT_FALSE(world.log().contains("post-startup"));
    advance_clock_ms(1);
    EVENTUALLY(world.log().contains("post-startup re-probe — 1 output(s) connected\n"));
}

TEST_F(desktop, a_signal_that_comes_before_the_loop_ends_it_at_once)
{
    raise(SIGTERM);
    server_run(server);
    finish();
    EXPECT_THAT(world.log(), HasSubstr("vantore-comp: clean shutdown — tearing down\n"));
}

TEST_F(desktop, a_second_signal_finds_nothing_left_to_end)
{
    raise(SIGTERM);
    server_run(server);
    finish();
    raise(SIGTERM);
    raise(SIGINT);
}

class ending_signal : public desktop, public testing::WithParamInterface<int>
{
};

TEST_P(ending_signal, ends_the_running_loop)
{
    auto *timer = wl_event_loop_add_timer(
        wl_display_get_event_loop(server.display),
        [](void *signal) { return raise(*static_cast<int *>(signal)); }, const_cast<int *>(&GetParam()));
    wl_event_source_timer_update(timer, 1);
    server_run(server);
    wl_event_source_remove(timer);
}

INSTANTIATE_TEST_SUITE_P(all, ending_signal, testing::Values(SIGINT, SIGTERM));

TEST_F(desktop, a_broken_pipe_does_not_end_the_process)
{
    raise(SIGPIPE);
}

TEST_F(desktop, the_end_takes_windows_and_outputs_down_without_rearranging)
{
    plug("A", 800, 600);
    plug("B", 800, 600);
    map("one");
    map("two");
    (void)heard();
    wlr_output *a = output("A").wlr_output;
    EXPECT_TRUE(a->enabled);
    finish();
    EXPECT_THAT(heard(), Not(testing::Contains(VNT_EVT_OUTPUTS)));
}

TEST_F(desktop, the_end_may_come_while_a_window_waits_for_its_first_frame)
{
    plug("A", 800, 600);
    test::window &w = connect().create_window("half");
    w.auto_draw = false;
    w.open();
    EVENTUALLY_EQ(w.configure_count(), 1);
    EXPECT_EQ(server.next_toplevel_id, 1U);
    finish();
}

TEST_F(desktop, a_second_session_in_the_same_process_starts_as_clean_as_the_first)
{
    plug("A", 800, 600);
    EXPECT_EQ(record(map("first")).id, 1U);
    finish();
    vantore_server second;
    ASSERT_TRUE(server_start(second));
    EXPECT_EQ(second.next_toplevel_id, 0U);
    EXPECT_TRUE(wl_list_empty(&second.toplevels));
    server_finish(second);
}

// Runs the session until it ends by itself. `happen` is called in its event loop.
void run_with(vantore_server &server, void (*happen)(void *server))
{
    wl_event_loop_add_idle(wl_display_get_event_loop(server.display), happen, &server);
    server_run(server);
}

TEST_F(desktop, ends_in_order_when_the_backend_goes)
{
    plug("A", 800, 600);
    map("w");
    run_with(server, [](void *data) { wlr_backend_destroy(static_cast<vantore_server *>(data)->backend); });
    EXPECT_EQ(server.backend, nullptr);
    EXPECT_THAT(world.log(), HasSubstr("vantore-comp: the backend has gone, ending"));
    EXPECT_NE(wl_list_empty(&server.outputs), 0);
}

TEST_F(desktop, ends_when_the_part_of_the_backend_goes_that_has_the_displays)
{
    map("w");
    run_with(server, [](void *data) {
        wlr_backend *displays = nullptr;
        wlr_multi_for_each_backend(
            static_cast<vantore_server *>(data)->backend,
            [](wlr_backend *part, void *found) {
                if (auto *&first = *static_cast<wlr_backend **>(found); first == nullptr)
                    first = part;
            },
            static_cast<void *>(&displays));
        wlr_backend_destroy(displays);
    });
    EXPECT_THAT(world.log(), HasSubstr("vantore-comp: the display backend has gone, ending"));
}

} // namespace
