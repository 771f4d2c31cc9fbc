// Forward declarations of all records, so that headers can name them without including one another.
#pragma once

struct vantore_server;
struct vantore_toplevel;
struct vantore_workspace;
struct vantore_output;
struct vantore_keyboard;
struct vantore_input_dev;
struct vantore_constraint;
struct vantore_decoration;
struct vantore_layer_surface;
struct vantore_unmanaged;
struct vantore_ime_relay;
struct vnt_ipc_client;
