#include "seat_requests.hpp"

#include "../server.hpp"
#include "resting_pointer.hpp"

void seat_request_set_selection(vantore_server &server, wlr_seat_request_set_selection_event *event)
{
    wlr_seat_set_selection(server.seat, event->source, event->serial);
}

void seat_request_set_primary_selection(vantore_server &server,
                                        wlr_seat_request_set_primary_selection_event *event)
{
    wlr_seat_set_primary_selection(server.seat, event->source, event->serial);
}

// The library frees a drag with its source or when the drag ends, so a drag without a source has to begin
// before it can be freed. An open menu then gets the keyboard back. Beginning it would end another drag that
// is under way, so in that case the drag leaks.
static void refuse_drag(wlr_seat *seat, wlr_drag *drag, uint32_t serial)
{
    if (drag->source != nullptr)
        return wlr_data_source_destroy(drag->source);
    if (seat->drag != nullptr)
        return;
    wlr_seat_keyboard_grab *menu = wlr_seat_keyboard_has_grab(seat) ? seat->keyboard_state.grab : nullptr;
    wlr_seat_start_drag(seat, drag, serial);
    wlr_seat_keyboard_end_grab(seat);
    if (menu != nullptr)
        wlr_seat_keyboard_start_grab(seat, menu);
}

void seat_request_start_drag(vantore_server &server, wlr_seat_request_start_drag_event *event)
{
    if (wlr_seat_validate_pointer_grab_serial(server.seat, event->origin, event->serial))
        wlr_seat_start_pointer_drag(server.seat, event->drag, event->serial);
    else
        refuse_drag(server.seat, event->drag, event->serial);
}

static void drag_ends(vantore_pointing &pointing)
{
    unlisten(pointing.drag_destroy);
    pointer_look_again(*owner_of<&vantore_server::pointing>(&pointing));
}

void seat_start_drag(vantore_server &server, wlr_drag *drag)
{
    listen<&vantore_pointing::drag_destroy, drag_ends>(server.pointing, drag->events.destroy);
    if (drag->icon == nullptr)
        return;
    wlr_scene_drag_icon_create(server.drag_icon_tree, drag->icon);
    drag_icon_follow_cursor(server);
}

// Moving even an empty tree makes the scene examine all windows again, which is too slow for every motion.
void drag_icon_follow_cursor(vantore_server &server)
{
    wlr_scene_tree *icons = server.drag_icon_tree;
    if (wl_list_empty(&icons->children) == 0)
        wlr_scene_node_set_position(&icons->node, int(server.cursor->x), int(server.cursor->y));
}
