// Which programs a session starts by itself: the lines of autostart.conf and the desktop entries.

#include "session/autostart.hpp"
#include "session/desktop_entry.hpp"
#include "support/isolation.hpp"
#include "text.hpp"

#include <format>
#include <fstream>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

namespace
{

struct autostart : testing::Test {
    autostart() { std::filesystem::create_directories(entries); }

    void entry(const std::string &name, std::string_view text) const
    {
        std::ofstream{entries / name} << text;
    }

    // Returns what an entry with these lines in its section runs, or an empty text for nothing.
    [[nodiscard]] std::string run_by(std::string_view lines) const
    {
        const size_t before = world.spawned().size();
        entry("app.desktop", std::format("[Desktop Entry]\n{}\n", lines));
        spawn_xdg_autostart();
        return world.spawned().size() > before ? world.spawned().back() : "";
    }

    // Writes a file into a directory of PATH, executable by default.
    void program(const std::string &name, mode_t mode = 0755) const
    {
        const auto path = world.directory() / "bin" / name;
        std::ofstream{path} << "x";
        chmod(path.c_str(), mode);
    }

    test::isolation world;
    std::filesystem::path entries = world.directory() / "config" / "autostart";
};

// autostart.conf

TEST_F(autostart, runs_each_line_of_its_file_without_comments)
{
    world.write_config("autostart.conf",
                       "# first\n\n  nm-applet --indicator   # tray\n\t \nfoo; bar 'a b'\r\n"
                       "#\nsleep 1 &#2\nlast");
    spawn_autostart();
    EXPECT_THAT(world.spawned(), ElementsAre("nm-applet --indicator", "foo; bar 'a b'", "sleep 1 &", "last"));
}

TEST_F(autostart, runs_a_line_that_is_too_long_as_several)
{
    world.write_config("autostart.conf", std::string(511, 'a') + "b\n");
    spawn_autostart();
    EXPECT_THAT(world.spawned(), ElementsAre(std::string(511, 'a'), "b"));
}

TEST_F(autostart, runs_nothing_without_its_file_and_never_waits_for_one)
{
    spawn_autostart();
    std::filesystem::create_directories(world.config_directory());
    ASSERT_EQ(mkfifo((world.config_directory() / "autostart.conf").c_str(), 0600), 0);
    spawn_autostart();
    EXPECT_THAT(world.spawned(), IsEmpty());
}

// The directory

TEST_F(autostart, reads_files_whose_name_is_more_than_the_suffix)
{
    for (const char *name : {".desktop", "a.desktop", "desktop", "b.desktop.bak", "c.Desktop", "d.desktop ",
                             "long.name.desktop"})
        entry(name, std::format("[Desktop Entry]\nExec={}\n", name));
    spawn_xdg_autostart();
    EXPECT_THAT(world.spawned(), UnorderedElementsAre("a.desktop", "long.name.desktop"));
}

TEST_F(autostart, passes_over_what_is_no_readable_file)
{
    ASSERT_EQ(mkfifo((entries / "fifo.desktop").c_str(), 0600), 0);
    std::filesystem::create_directory(entries / "directory.desktop");
    std::filesystem::create_symlink("/nowhere", entries / "dangling.desktop");
    std::filesystem::create_symlink("/dev/zero", entries / "device.desktop");
    entry("good.desktop", "[Desktop Entry]\nExec=good\n");
    spawn_xdg_autostart();
    EXPECT_THAT(world.spawned(), ElementsAre("good"));
}

TEST_F(autostart, reads_desktop_entries_only_from_the_users_configuration)
{
    const auto at_home = world.directory() / "home" / ".config" / "autostart";
    std::filesystem::create_directories(at_home);
    std::ofstream{at_home / "home.desktop"} << "[Desktop Entry]\nExec=home\n";
    entry("config.desktop", "[Desktop Entry]\nExec=config\n");
    setenv("XDG_CONFIG_DIRS", (world.directory() / "config").c_str(), 1);
    spawn_xdg_autostart();
    setenv("XDG_CONFIG_HOME", "", 1);
    spawn_xdg_autostart();
    unsetenv("XDG_CONFIG_HOME");
    spawn_xdg_autostart();
    unsetenv("HOME");
    spawn_xdg_autostart();
    EXPECT_THAT(world.spawned(), ElementsAre("config", "home", "home"));
}

TEST_F(autostart, without_a_directory_runs_nothing)
{
    std::filesystem::remove_all(entries);
    spawn_xdg_autostart();
    std::ofstream{entries} << "a file";
    spawn_xdg_autostart();
    EXPECT_THAT(world.spawned(), IsEmpty());
}

// Entries

struct entry_case {
    const char *lines;
    const char *run; // empty for nothing
};

class an_entry : public autostart, public testing::WithParamInterface<entry_case>
{
};

TEST_P(an_entry, runs_its_command_or_nothing)
{
    program("there");
    program("not-executable", 0644);
    EXPECT_EQ(run_by(GetParam().lines), GetParam().run) << GetParam().lines;
}

INSTANTIATE_TEST_SUITE_P(
    by_its_command, an_entry,
    testing::Values(entry_case{"Exec=foo --bar", "foo --bar"}, entry_case{" Exec \t=  foo \r", "foo"},
                    entry_case{"", ""}, entry_case{"Exec=", ""}, entry_case{"Exec", ""},
                    entry_case{"Exec[de]=foo", ""}, entry_case{"exec=foo", ""}, entry_case{"#Exec=foo", ""},
                    entry_case{"Exec=foo # bar", "foo # bar"}, entry_case{"Exec=a=b", "a=b"},
                    entry_case{"Exec=first\nExec=second", "second"}, entry_case{"Exec=foo\nExec=", ""},
                    entry_case{"Exec=foo %U --x", "foo  --x"}, entry_case{"Exec=foo %%d %U", "foo %d"},
                    entry_case{"Exec=%U", ""}, entry_case{"Exec=%f %i", ""}));

INSTANTIATE_TEST_SUITE_P(by_its_section, an_entry,
                         testing::Values(entry_case{"[Desktop Action New]\nExec=new", ""},
                                         entry_case{"Exec=foo\n[Desktop Action New]\nExec=new", "foo"},
                                         entry_case{"[Other]\nExec=no\n[Desktop Entry]\nExec=yes", "yes"},
                                         entry_case{"[Desktop Entry] \nExec=yes", "yes"},
                                         entry_case{"[desktop entry]\nExec=no", ""},
                                         entry_case{"[Desktop Entry]x\nExec=no", ""}));

INSTANTIATE_TEST_SUITE_P(
    by_its_flags, an_entry,
    testing::Values(entry_case{"Exec=x\nHidden=true", ""}, entry_case{"Exec=x\nHidden=false", "x"},
                    entry_case{"Exec=x\nHidden=True", "x"}, entry_case{"Exec=x\nHidden=1", "x"},
                    entry_case{"Exec=x\nHidden=true\nHidden=false", "x"},
                    entry_case{"Exec=x\nX-GNOME-Autostart-enabled=false", ""},
                    entry_case{"Exec=x\nX-GNOME-Autostart-enabled=true", "x"},
                    entry_case{"Exec=x\nX-GNOME-Autostart-enabled=0", "x"},
                    entry_case{"Exec=x\nX-GNOME-Autostart-enabled=false\nX-GNOME-Autostart-enabled=true",
                               "x"},
                    entry_case{"Exec=x\nType=Application", "x"}, entry_case{"Exec=x\nType=", "x"},
                    entry_case{"Exec=x\nType=Link", ""}, entry_case{"Exec=x\nType=application", ""}));

INSTANTIATE_TEST_SUITE_P(
    by_its_desktops, an_entry,
    testing::Values(entry_case{"Exec=x\nOnlyShowIn=KDE;", ""}, entry_case{"Exec=x\nOnlyShowIn=GNOME;", "x"},
                    entry_case{"Exec=x\nOnlyShowIn=KDE;Vantore", "x"}, entry_case{"Exec=x\nOnlyShowIn=", "x"},
                    entry_case{"Exec=x\nNotShowIn=GNOME;", ""}, entry_case{"Exec=x\nNotShowIn=Vantore", ""},
                    entry_case{"Exec=x\nNotShowIn=KDE;XFCE;", "x"},
                    entry_case{"Exec=x\nOnlyShowIn=GNOME;\nNotShowIn=Vantore;", ""}));

INSTANTIATE_TEST_SUITE_P(by_the_program_that_it_tries, an_entry,
                         testing::Values(entry_case{"Exec=x\nTryExec=there", "x"},
                                         entry_case{"Exec=x\nTryExec=", "x"},
                                         entry_case{"Exec=x\nTryExec=missing", ""},
                                         entry_case{"Exec=x\nTryExec=not-executable", ""},
                                         entry_case{"Exec=x\nTryExec=/no/such/program", ""},
                                         entry_case{"Exec=x\nTryExec=/proc/self/exe", "x"}));

TEST_F(autostart, goes_on_after_entries_that_it_skips)
{
    for (int i = 0; i < 20; i++)
        entry(std::format("bad{}.desktop", i), i % 2 == 0 ? "[Desktop Entry]\nHidden=true\n" : "\xff\x01\n[");
    entry("good.desktop", "[Desktop Entry]\nExec=good\n");
    spawn_xdg_autostart();
    EXPECT_THAT(world.spawned(), ElementsAre("good"));
}

TEST_F(autostart, cuts_values_and_lines_that_are_too_long)
{
    const std::string command(1100, 'x');
    EXPECT_EQ(run_by("Exec=" + command), std::string(1023 - 5, 'x'));
    EXPECT_EQ(run_by("Exec=foo\nType=Application" + std::string(200, ' ') + "\n"), "foo");
    EXPECT_EQ(run_by("Exec=foo\nOnlyShowIn=" + std::string(510, 'x') + ";GNOME"), "") << "cut before GNOME";
}

// The pieces

TEST(token_listed, compares_whole_entries)
{
    struct list_case {
        const char *list, *token;
        bool listed;
    };
    for (const list_case &c : std::vector<list_case>{{"", "GNOME", false},
                                                     {"", "", false},
                                                     {"GNOME", "GNOME", true},
                                                     {"GNOME;", "GNOME", true},
                                                     {"GNOME;", "", false},
                                                     {"KDE;;GNOME", "", true},
                                                     {"KDE;GNOME;XFCE", "GNOME", true},
                                                     {"KDE;GNOME2", "GNOME", false},
                                                     {"KDE;gnome", "GNOME", false},
                                                     {"KDE; GNOME", "GNOME", false},
                                                     {"KDE:GNOME", "GNOME", false}})
        EXPECT_EQ(autostart_token_listed(c.list, c.token), c.listed) << c.list << " has " << c.token;
}

TEST(show_here, heeds_lists_of_desktops_to_show_and_not_to_show_in)
{
    EXPECT_TRUE(autostart_show_here("", ""));
    EXPECT_TRUE(autostart_show_here("Vantore;", ""));
    EXPECT_TRUE(autostart_show_here("", "KDE"));
    EXPECT_TRUE(autostart_show_here("GNOME;KDE", "KDE"));
    EXPECT_FALSE(autostart_show_here("KDE", ""));
    EXPECT_FALSE(autostart_show_here("Vantore", "GNOME"));
    EXPECT_FALSE(autostart_show_here("", "KDE;Vantore"));
}

TEST(field_codes, are_removed_and_two_percent_signs_are_one)
{
    struct field_case {
        const char *command, *stripped;
    };
    for (const field_case &c : std::vector<field_case>{{"", ""},
                                                       {"foo", "foo"},
                                                       {"foo %U bar", "foo  bar"},
                                                       {"100%%", "100%"},
                                                       {"%%U", "%U"},
                                                       {"%%%U", "%"},
                                                       {"foo %", "foo %"},
                                                       {"%U%F%%%", "%%"},
                                                       {"% x", "x"}}) {
        std::array<char, 1024> out{};
        autostart_strip_fields(c.command, out);
        EXPECT_STREQ(out.data(), c.stripped) << c.command;
    }
}

TEST(field_codes, are_cut_to_the_space_for_the_result)
{
    std::array<char, 1024> out{};
    autostart_strip_fields(std::string(2000, 'x') + "%%", out);
    EXPECT_EQ(text_of(out), std::string(1023, 'x'));
    std::array<char, 3> small{};
    autostart_strip_fields("a%%b", small);
    EXPECT_EQ(text_of(small), "a%");
}

TEST_F(autostart, looks_for_programs_in_every_entry_of_the_path)
{
    program("prog");
    const std::string bin = world.directory() / "bin";
    const auto found_in = [](const std::string &path) {
        setenv("PATH", path.c_str(), 1);
        return autostart_prog_ok("prog");
    };
    EXPECT_TRUE(found_in(bin));
    EXPECT_TRUE(found_in(bin + "/"));
    EXPECT_TRUE(found_in("/nowhere:" + bin));
    EXPECT_TRUE(found_in("::" + bin + ":"));
    EXPECT_TRUE(found_in(std::string(2000, 'x') + ":" + bin)) << "one that is too long is passed over";
    EXPECT_FALSE(found_in("/nowhere"));
    std::filesystem::current_path(bin);
    EXPECT_FALSE(found_in("")) << "not in the working directory";
    EXPECT_FALSE(found_in("::"));
    std::filesystem::current_path("/");
    unsetenv("PATH");
    EXPECT_FALSE(autostart_prog_ok("prog"));
    EXPECT_TRUE(autostart_prog_ok((bin + "/prog").c_str()));
}

TEST_F(autostart, builds_paths_of_up_to_1023_characters)
{
    program("prog");
    const std::string bin = world.directory() / "bin";
    const auto of_length = [&](size_t length) { // the whole path; extra slashes mean nothing
        setenv("PATH", (bin + std::string(length - bin.size() - 5, '/')).c_str(), 1);
        return autostart_prog_ok("prog");
    };
    EXPECT_TRUE(of_length(1023));
    EXPECT_FALSE(of_length(1024));
}

} // namespace
