// Each output shows a picture below everything else. A folder of pictures is a slide show.
#pragma once

#include "../fwd.hpp"

void wallpapers_begin(vantore_server &server);
void wallpapers_end(vantore_server &server);

// Brings the output's wallpaper up to date with the settings and the output's box. The new picture shows when
// it has been decoded, and the old one stays until then. With `force` the picture is decoded again although
// nothing has changed, and with `repick` a slide show moves on. Does nothing on an
// output that mirrors something.
void set_wallpaper(vantore_output &o, bool force, bool repick);

// Follows a reload. Slide shows start their intervals again.
void wallpapers_reload(vantore_server &server);

// Hides the picture, or shows it again.
void wallpaper_show(vantore_output &o, bool shown);
void wallpaper_destroy(vantore_output &o);
