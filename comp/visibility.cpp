#include "visibility.hpp"

#include "input/resting_pointer.hpp"
#include "outputs/perf_mode.hpp"

void visible_changed(vantore_server &server)
{
    refresh_perf_mode(server);
    pointer_look_again(server);
}
