// Makes keymaps for physical keyboards from the configured layout.
#pragma once

struct wlr_keyboard;

// Compiles the configured layout for the keyboard. If it does not compile, an error is logged and the
// keyboard keeps what it had, which may be no keymap at all.
void keyboard_apply_layout(wlr_keyboard *keyboard);
