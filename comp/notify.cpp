#include "notify.hpp"

#include "spawn.hpp"

void config_notify(const char *body)
{
    const char *const command[]{"notify-send", "-a", "Vantore", "Config", body, nullptr};
    spawn_program(command);
}
