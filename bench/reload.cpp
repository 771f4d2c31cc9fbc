// What a reload of the configuration costs, from the signal to the event that announces it.

#include "subject.hpp"

#include "ipc/protocol.hpp"
#include "support/ipc_client.hpp"
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

// CPU time of the program in milliseconds.
double reload_ms(const subject &session, test::ipc_client &subscriber)
{
    const double before = cpu_us(session.pid());
    kill(session.pid(), SIGHUP);
    wait_for(subscriber, VNT_EVT_RELOADED | ipc_event_bit);
    return (cpu_us(session.pid()) - before) / 1000;
}

void reloads(const char *with, const subject &session, test::ipc_client &subscriber)
{
    std::vector<double> ms;
    for (int i = 0; i < 101; i++)
        ms.push_back(reload_ms(session, subscriber));
    printf("a reload %s: the first %.2f, the second %.2f, the last of 101 %.2f, the median %.2f ms of CPU\n",
           with, ms[0], ms[1], ms.back(), median(ms));
}

} // namespace

int main()
{
    subject session{COMPOSITOR_BINARY};
    test::ipc_client subscriber{session.ipc_socket()};
    subscriber.send(VNT_MSG_SUBSCRIBE, {});
    wait_for(subscriber, VNT_MSG_SUBSCRIBE);
    reloads("of the default files", session, subscriber);
    auto client = session.connect();
    test::seat seat{*client};
    const test::virtual_keyboard keyboard{seat};
    subject::rest(*client);
    reloads("with a keyboard", session, subscriber);
}
