// Makes the keymap of the configured layout, which all physical keyboards share.
#pragma once

struct wlr_keyboard;

// Gives the keyboard the configured layout. A keyboard that has it already keeps its locks and its chosen
// layout. If the layout does not compile, an error is logged and the keyboard keeps what it had, which may be
// no keymap at all.
void keyboard_apply_layout(wlr_keyboard *keyboard);

// Compiles the layout again before its next use, because files that describe it may have changed.
void keymap_expire();
