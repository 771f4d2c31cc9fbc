// One timer drives all animations. Each animation reads the clock. The timer runs only while one is
// unfinished, so an idle desktop does not wake.
#pragma once

#include "../fwd.hpp"

// Make and remove the timer.
void anim_start(vantore_server &server);
void anim_stop(vantore_server &server);

// Call this when an animation begins. The first tick comes at once.
void anim_kick(vantore_server &server);
