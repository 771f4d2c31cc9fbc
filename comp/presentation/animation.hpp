// One timer moves everything that moves. Each animation reads the clock; the timer runs while any is
// unfinished, so that an idle desktop does not wake.
#pragma once

#include "../fwd.hpp"

// Makes the timer, and takes it away.
void anim_start(vantore_server &server);
void anim_stop(vantore_server &server);

// An animation has begun: the first tick comes at once.
void anim_kick(vantore_server &server);
