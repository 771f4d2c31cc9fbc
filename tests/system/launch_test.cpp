// Keys that start programs, in a session of the real binary.

#include "support/files.hpp"
#include "support/places.hpp"
#include "support/real_session.hpp"
#include "support/remote_user.hpp"

#include "wlr.hpp"

#include <linux/input-event-codes.h>

using test::contents;
using test::eventually;

namespace
{

// A session that finds its launcher as under ./dev run.
struct program_keys : test::real_session {
    program_keys() : real_session({test::with_launcher}) {}

    void press_terminal_key() const
    {
        test::remote_user user{wayland_socket()};
        user.chord(WLR_MODIFIER_LOGO, KEY_ENTER);
    }
};

TEST_F(program_keys, open_a_terminal)
{
    press_terminal_key();
    EXPECT_TRUE(eventually([&] { return output_of({"windows"}).contains(R"("app_id":"foot")"); }))
        << compositor.output();
}

TEST_F(program_keys, use_another_launcher_that_is_earlier_in_the_path)
{
    const auto heard = world.directory() / "heard";
    world.write_program("vantore-launch", "printf '%s\\n' \"$@\" > " + heard.string());
    press_terminal_key();
    EXPECT_TRUE(eventually([&] { return contents(heard).contains("|| foot ||"); })) << compositor.output();
}

} // namespace
