// Desktop notifications about the session itself.
#pragma once

// Shows a notification with the title "Config", if notify-send is installed.
void config_notify(const char *body);
