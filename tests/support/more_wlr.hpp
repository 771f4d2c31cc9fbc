// Globals of wlroots that the compositor does not offer yet. Tests of the clients for them need these
// headers.
#pragma once

#include "wlr.hpp"

extern "C" {
#define static
#include <wlr/types/wlr_idle_inhibit_v1.h>
#include <wlr/types/wlr_pointer_gestures_v1.h>
#include <wlr/types/wlr_session_lock_v1.h>
#include <wlr/types/wlr_tablet_pad.h>
#include <wlr/types/wlr_tablet_tool.h>
#include <wlr/types/wlr_tablet_v2.h>
#include <wlr/types/wlr_text_input_v3.h>
#undef static
}
