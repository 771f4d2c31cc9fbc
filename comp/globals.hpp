// Creates the Wayland globals that a session offers. Steps of startup.cpp call these functions in the order
// of its table.
//
// We offer a global only if something handles its requests. Otherwise its clients would wait for ever.
#pragma once

#include "fwd.hpp"

// Guards the requests that the library trusts too much. Call it before any client connects.
void globals_guard_requests(vantore_server &server);
// Creates what surfaces, selections and windows build on. Returns false without a compositor global.
bool globals_create_first(vantore_server &server);
// Offers explicit synchronisation if the GPU supports it and VANTORE_EXPLICIT_SYNC is not "0".
void globals_create_explicit_sync(vantore_server &server);
// Tells clients when their frames became visible, if the configuration allows it.
void globals_create_presentation(vantore_server &server);
bool globals_create_xdg_shell(vantore_server &server);
void globals_create_decoration(vantore_server &server);
// Panels, docks and wallpapers use the layer shell.
void globals_create_layer_shell(vantore_server &server);
// Creates the seat and handles what devices and clients ask of it. Returns false if the seat can't be made.
bool globals_create_seat(vantore_server &server);
// Offers capture, clipboard managers, gamma, output names, and what games ask of the pointer.
void globals_create_last(vantore_server &server);
