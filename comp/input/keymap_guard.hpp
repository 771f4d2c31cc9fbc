// Keeps a keymap file that is too short from ending the session.
#pragma once

#include "../request_guards.hpp"

// The dispatcher for zwp_virtual_keyboard_v1. The library maps the keymap file of a virtual keyboard and
// reads as many bytes as the client says. If the file is shorter, reading beyond its end kills the process
// with SIGBUS. Here each keymap is first copied into memory of our own. An error ends the client when its
// file is shorter than it said or not a regular file, or when the keymap is empty or larger than 1 MiB.
request_dispatcher dispatch_virtual_keyboard_request;
