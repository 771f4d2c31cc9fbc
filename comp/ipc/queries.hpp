// Describes the session's state as JSON. The order of keys is fixed, because simple clients read by position.
#pragma once

#include "../fwd.hpp"

struct strbuf;

// Appends an array of all workspaces, except those that are unnamed, empty and on no output.
void ipc_json_workspaces(vantore_server &server, strbuf &sb);
// Appends an array of all mapped windows, most recently raised first.
void ipc_json_windows(vantore_server &server, strbuf &sb);
// Appends an array of all outputs, including disabled ones, newest first.
void ipc_json_outputs(vantore_server &server, strbuf &sb);
