// Data that the user drags out of a real program.

#include "support/files.hpp"
#include "support/real_session.hpp"
#include "support/remote_user.hpp"

#include <fstream>
#include <linux/input-event-codes.h>

using test::contents;
using test::eventually;
using testing::Optional;

namespace
{

const char *const text = "one line of text\nanother line of text\na third line of text\n";

// A terminal at the right, which writes what it gets into a file, and an editor with some text.
struct drops : test::real_session {
    drops() : user(wayland_socket())
    {
        EXPECT_TRUE(eventually([&] { return box_of("foot").width > 0; })) << terminal.output();
        const wlr_box box = box_of("foot");
        user.move_to(box.x + 50, box.y - 15); // its title bar
        user.press();
        user.move_to(box.x + 300, box.y);
        user.move_to(box.x + 450, box.y);
        user.release();
        std::ofstream{file("text")} << text;
    }

    [[nodiscard]] std::string file(const char *name) const { return world.directory() / name; }

    // The editor tells what it says to the compositor and hears from it.
    [[nodiscard]] test::process open_editor() const
    {
        return run({"env", "WAYLAND_DEBUG=1", "l3afpad", file("text")});
    }

    // Selects the editor's text and begins to drag it. The first keys arrive while the editor is still
    // learning that there is a keyboard.
    bool drags_text_of(test::process &editor)
    {
        return eventually([&] {
            const wlr_box box = box_of("l3afpad");
            user.chord(WLR_MODIFIER_CTRL, KEY_A);
            user.move_to(box.x + 60, box.y + 90);
            user.press();
            const size_t before = drags_begun_by(editor);
            const bool begins = eventually(
                [&] {
                    wiggle(box.x + 80, box.y + 110);
                    return drags_begun_by(editor) > before;
                },
                std::chrono::seconds{3});
            if (!begins)
                user.release();
            return begins;
        });
    }

    // Toolkits begin a drag, and look for its target, with a motion that they get after they have understood
    // what came before.
    void wiggle(int x, int y)
    {
        user.move_to(x, y);
        user.move_to(x + 20, y + 20);
    }

    static size_t drags_begun_by(test::process &editor)
    {
        static constexpr std::string_view request = "start_drag(";
        const std::string said = editor.output();
        size_t count = 0;
        for (size_t at = said.find(request); at != std::string::npos; at = said.find(request, at + 1))
            count++;
        return count;
    }

    // Goes on until the terminal would take the text. The editor takes none of it into its own selection.
    bool drags_to_terminal(test::process &editor)
    {
        const wlr_box box = box_of("foot");
        return eventually([&] {
            wiggle(box.x + 180, box.y + 80);
            return editor.output().contains(".target(\"");
        });
    }

    test::remote_user user;
    test::process terminal = run(
        {"foot", "--override", "initial-window-size-pixels=300x200", "sh", "-c", "cat > " + file("dropped")});
};

TEST_F(drops, arrive_in_another_program)
{
    test::process editor = open_editor();
    ASSERT_TRUE(eventually([&] { return box_of("l3afpad").width > 0; })) << editor.output();
    ASSERT_TRUE(drags_text_of(editor)) << editor.output();
    ASSERT_TRUE(drags_to_terminal(editor)) << editor.output();
    user.release();
    EXPECT_TRUE(eventually([&] { return contents(file("dropped")) == text; })) << contents(file("dropped"));
}

TEST_F(drops, on_the_bare_desktop_reach_nobody)
{
    test::process editor = open_editor();
    ASSERT_TRUE(eventually([&] { return box_of("l3afpad").width > 0; })) << editor.output();
    ASSERT_TRUE(drags_text_of(editor)) << editor.output();
    ASSERT_TRUE(drags_to_terminal(editor)) << editor.output();
    user.move_to(80, 680);
    user.release();
    EXPECT_TRUE(editor.says(".cancelled()")) << editor.output();
    const wlr_box box = box_of("foot");
    user.click(box.x + 200, box.y + 100);
    user.tap(KEY_A);
    user.tap(KEY_ENTER);
    EXPECT_TRUE(eventually([&] { return contents(file("dropped")) == "a\n"; })) << contents(file("dropped"));
    (void)output_of({"command", "close", "app:l3afpad"});
    EXPECT_THAT(editor.wait(), Optional(0)) << editor.output();
}

} // namespace
