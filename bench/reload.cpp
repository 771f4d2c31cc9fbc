// Measures what a reload of the configuration costs, from the signal to the event that announces it.

#include "subject.hpp"

#include "ipc/protocol.hpp"
#include "support/ipc_client.hpp"
#include "support/places.hpp"
#include "support/wayland_devices.hpp"

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <cstdlib>

namespace
{

void wait_for(test::ipc_client &c, uint32_t type)
{
    while (std::ranges::find(c.messages(), type, &test::ipc_message::type) == c.messages().end()) {
        c.pump();
        if (c.hung_up())
            abort();
    }
    c.take();
}

// CPU time of the program in milliseconds for one reload.
double reload_ms(const subject &session, test::ipc_client &subscriber, int times)
{
    const double before = cpu_us(session.pid());
    for (int i = 0; i < times; i++) {
        kill(session.pid(), SIGHUP);
        wait_for(subscriber, VNT_EVT_RELOADED | ipc_event_bit);
    }
    return (cpu_us(session.pid()) - before) / 1000 / times;
}

void reloads(const char *with, subject &session, test::client &client, test::ipc_client &subscriber)
{
    constexpr int batch = 20;
    const double first = reload_ms(session, subscriber, 1); // loads the cursor theme too, once a session
    session.rest(client);
    const double at_start = reload_ms(session, subscriber, batch);
    (void)reload_ms(session, subscriber, 100 - batch - 1);
    const double after_100 = reload_ms(session, subscriber, batch);
    printf("a reload %s: the first %.2f, the next %.2f, after 100 %.2f ms of CPU\n", with, first, at_start,
           after_100);
}

} // namespace

int main()
{
    subject session{test::compositor_binary};
    test::ipc_client subscriber{session.ipc_socket()};
    subscriber.send(VNT_MSG_SUBSCRIBE, {});
    wait_for(subscriber, VNT_MSG_SUBSCRIBE);
    auto client = session.connect();
    session.rest(*client);
    reloads("of the default files", session, *client, subscriber);
    test::seat seat{*client};
    const test::virtual_keyboard keyboard{seat};
    session.rest(*client);
    reloads("with a keyboard", session, *client, subscriber);
}
