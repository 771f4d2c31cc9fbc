// The programs that the user wants in every session, started once when it begins. They are on their own from
// then on, and what can't be started is passed over in silence.
#pragma once

// Every line of autostart.conf, as a shell line.
void spawn_autostart();

// The entries of the user's own autostart directory. Those of the system are meant for other desktops.
void spawn_xdg_autostart();
