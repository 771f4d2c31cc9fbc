// Desktop notifications about the session itself.
#pragma once

// Shows one under the title "Config", where the program for that is installed.
void config_notify(const char *body);
