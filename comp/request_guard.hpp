// Looks at a client's requests before the library does.
#pragma once

#include "wlr.hpp"

// From now on the dispatcher gets every request to the resource, with the library's table of handlers as its
// first argument. That table stays the resource's implementation, because the library recognises its
// resources by it.
inline void put_in_front_of_library(wl_resource *resource, wl_dispatcher_func_t dispatcher)
{
    wl_resource_set_dispatcher(resource, dispatcher, resource->object.implementation,
                               wl_resource_get_user_data(resource), resource->destroy);
}
