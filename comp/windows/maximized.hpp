// Keeps maximized windows in the usable area of their output. Tiles and fullscreen windows do not take part:
// they have places of their own.
#pragma once

#include "../fwd.hpp"
#include "../wlr.hpp"

#include <vector>

// Remembers which output each maximized window fills. Make it before the usable boxes of outputs change, and
// call follow after that. Nothing else may happen in between.
class maximized_windows
{
public:
    explicit maximized_windows(vantore_server &server);
    // Fills the new usable boxes. A window whose output has gone takes that of its workspace's output, if
    // there is one.
    void follow() const;

private:
    struct place {
        vantore_toplevel *t;
        const vantore_output *o; // null when it has gone
        wlr_box usable; // of that output, before the change
    };
    std::vector<place> places;
};

// Call this after the workspace came to an output, because the output that a window filled may have gone
// meanwhile.
void fit_maximized_windows(vantore_workspace &ws);

// Fills the usable box of the output that the window lies on if the window is maximized. Call this after the
// window had another state meanwhile, in which it did not follow that box.
void fit_maximized(vantore_toplevel &t);
