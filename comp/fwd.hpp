// Forward declarations of all records, so that headers can name them without including one another.
#pragma once

struct vantore_server;
struct vantore_toplevel;
struct vantore_workspace;
struct vantore_output;
struct vnt_ipc_client;
