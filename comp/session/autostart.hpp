// Starts the programs that the user wants in every session, once when it begins. Nothing watches over them
// afterwards, and a program that can't be started is skipped silently.
#pragma once

// Runs every line of autostart.conf as a shell line.
void spawn_autostart();

// Starts the entries of the user's own autostart directory. The system's entries are meant for other
// desktops.
void spawn_xdg_autostart();
