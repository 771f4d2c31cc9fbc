// Measures in this process what a mirror costs: one change of a window until every output has painted it,
// with nothing mirrored, with a mirror of the output, and with a mirror of the window. Rendering is done in
// software, so the driver draws in threads of its own.

#include "in_process.hpp"
#include "support/desktop.hpp"

#include "outputs/mirror.hpp"
#include "outputs/pacing.hpp"
#include "reload.hpp"

static constexpr uint32_t red = 0xffcc3311, blue = 0xff1133cc;

struct desktop : test::desktop {
    void SetUp() override
    {
        test::desktop::SetUp();
        plug("A", 1920, 1088);
        plug("B", 1920, 1088);
        config("max_render_time = off\n");
        config_reload(server);
        w = &map("window", {800, 600});
        place(*w, output_layout_box(output("A")).x + 100, 100);
        settle();
    }
    // What happens from the commit of a picture to the last frame.
    cost frame()
    {
        int i = 0;
        return measure(
            [&] {
                settle();
                advance_clock_ms(20);
            },
            [&] {
                w->fill(i++ % 2 != 0 ? red : blue);
                settle();
            });
    }
    test::window *w = nullptr;
};

TEST_F(desktop, mirrors)
{
    print("a picture of a window of 800x600", frame());
    mirror_enable_output(output("B"), output("A"));
    print("the same with a mirror of its output", frame());
    mirror_enable(output("B"), record(*w));
    print("the same with a mirror of the window", frame());
    mirror_disable(output("B"), true);
    print("the same without one again", frame());
}
