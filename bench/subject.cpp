#include "subject.hpp"

#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sys/socket.h>
#include <sys/un.h>

using namespace std::chrono_literals;
using std::chrono::steady_clock;

std::string read_proc(pid_t pid, const char *file)
{
    std::ifstream in{"/proc/" + std::to_string(pid) + "/" + file};
    return {std::istreambuf_iterator<char>{in}, {}};
}

static double thread_us(pid_t pid, const std::string &thread)
{
    const std::string stat = read_proc(pid, ("task/" + thread + "/schedstat").c_str());
    return double(strtoll(stat.c_str(), nullptr, 10)) / 1000;
}

double cpu_us(pid_t pid)
{
    return thread_us(pid, std::to_string(pid));
}

double cpu_of_threads_us(pid_t pid)
{
    double sum = 0;
    for (const auto &thread : std::filesystem::directory_iterator{"/proc/" + std::to_string(pid) + "/task"})
        sum += thread_us(pid, thread.path().filename());
    return sum;
}

static const test::variables &prepared(test::private_world &world, const test::variables &more,
                                       const std::string &settings)
{
    world.environment["VANTORE_HEADLESS_SIZE"] = "1920x1080";
    for (const auto &[name, value] : more)
        world.environment[name] = value;
    if (!settings.empty())
        std::ofstream{world.directory() / "config" / "vantore" / "compositor.conf"} << settings;
    return world.environment;
}

subject::subject(const char *binary, const test::variables &more, const std::string &settings)
    : name(binary), program({"env", std::string{"LD_PRELOAD="} + getenv("VANTORE_TEST_PRELOAD"), binary},
                            prepared(world, more, settings))
{
    if (!program.says("running — WAYLAND_DISPLAY=wayland-0"))
        fail("did not start");
}

void subject::fail(const char *how)
{
    program.send(SIGKILL); // exit() does not run the destructor that would end it
    fprintf(stderr, "%s %s:\n%s\n", name, how, program.output().c_str());
    exit(1);
}

std::unique_ptr<test::client> subject::connect()
{
    const int fd = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    const std::string path = runtime_directory() + "/wayland-0";
    path.copy(address.sun_path, sizeof address.sun_path - 1);
    if (fd < 0 || ::connect(fd, reinterpret_cast<sockaddr *>(&address), sizeof address) != 0)
        fail("accepts no client");
    auto client = std::make_unique<test::client>(fd);
    pump_until(*client, [&] { return client->ready(); });
    return client;
}

std::string subject::ipc_socket()
{
    if (!says("IPC listening"))
        fail("does not listen for IPC");
    return runtime_directory() + "/vantore-ipc-" + std::to_string(pid()) + ".sock";
}

void subject::rest(test::client &client)
{
    const int asked = client.roundtrip_begin();
    pump_until(client, [&] { return client.roundtrip_done(asked); });
    const auto end = steady_clock::now() + 60ms;
    pump_until(client, [&] { return steady_clock::now() > end; });
}

test::window &subject::map_one(test::client &client)
{
    test::window &w = client.create_window("bench");
    w.preferred = {320, 200};
    w.open();
    pump_until(client, [&] { return w.has(test::ACTIVATED) && w.configure_count() > 1; });
    return w;
}
