// The Wayland globals that a session offers, made by steps of the start in the order of startup.cpp.
//
// A global is offered only where somebody handles its events: a client of another would wait for ever.
#pragma once

#include "fwd.hpp"

// Everything that surfaces, selections and windows build on. False when there is no compositor global.
bool globals_create_first(vantore_server &server);
// Explicit synchronisation, where the GPU can do it and VANTORE_EXPLICIT_SYNC is not "0".
void globals_create_explicit_sync(vantore_server &server);
// Feedback on when frames became visible, where the configuration has it.
void globals_create_presentation(vantore_server &server);
bool globals_create_xdg_shell(vantore_server &server);
void globals_create_decoration(vantore_server &server);
// Panels, docks and wallpapers.
void globals_create_layer_shell(vantore_server &server);
// The seat, and everything that devices and clients ask of it.
bool globals_create_seat(vantore_server &server);
// Capture, clipboard managers, gamma, output names, and what games ask of the pointer.
void globals_create_last(vantore_server &server);
