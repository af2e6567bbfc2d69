// Sends 100 bytes to another process and waits for the acknowledgement.

#include <benchmark/benchmark.h>
#include <dbus/dbus.h>

#include <chrono>
#include <iostream>
#include <thread>

#include "benchmarks/files/Scratch.h"
#include "benchmarks/threads/system/SocketPeer.h"
#include "qvcommon/UserMessages.h"
#include "tests/support/Child.h"

namespace {

const std::string g_text(100, 'x');
constexpr const char* kBusName = "org.qvcommon.Bench";

class Listener : public CUserMessageListener {
public:
    bool m_ended = false;
    void OnUserMessage(const CString& text) override { m_ended = text == "end"; }
};

QV_CHILD(Listen) {
    Listener listener;
    listener.Create(arguments.at(0).c_str(), 0);
    std::cout << "ready" << std::endl;
    while (!listener.m_ended) listener.PumpMessages(1000);
    return 0;
}

void Ours(benchmark::State& state) {
    const CString name("qvbench" + std::to_string(std::chrono::steady_clock::now().time_since_epoch().count()));
    CProcess child;
    StartChild(child, "Listen", {name});
    LineFrom(child);
    const CString text(g_text);
    for (auto _ : state)
        if (!CUserMessageListener::SendUserMessage(name, 0, text)) return state.SkipWithError("not delivered");
    CUserMessageListener::SendUserMessage(name, 0, "end");
    child.Wait();
}

QV_CHILD(Echo) {
    SocketPeer peer = SocketPeer::Connected(arguments.at(0));
    for (std::string text; peer.Receive(text);) peer.Send("1");
    return 0;
}

void BareSocket(benchmark::State& state) {
    const std::string path = TheScratch() / "socket";
    CProcess child;
    StartChild(child, "Echo", {CString(path)});
    SocketPeer peer = SocketPeer::Accepted(path);
    std::filesystem::remove(path);
    std::string answer;
    for (auto _ : state) {
        peer.Send(g_text);
        if (!peer.Receive(answer)) return state.SkipWithError("not answered");
    }
}

/// A connection to the benchmark's own bus.
class Bus {
public:
    explicit Bus(const std::string& address) : m_connection(dbus_connection_open_private(address.c_str(), nullptr)) {
        while (!m_connection) {
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
            m_connection = dbus_connection_open_private(address.c_str(), nullptr);
        }
        dbus_connection_set_exit_on_disconnect(m_connection, 0);
        dbus_bus_register(m_connection, nullptr);
    }
    ~Bus() {
        dbus_connection_close(m_connection);
        dbus_connection_unref(m_connection);
    }
    Bus(const Bus&) = delete;
    Bus& operator=(const Bus&) = delete;

    DBusConnection* Get() const { return m_connection; }

private:
    DBusConnection* m_connection;
};

QV_CHILD(AnswerOnBus) {
    const Bus bus(arguments.at(0));
    dbus_bus_request_name(bus.Get(), kBusName, 0, nullptr);
    std::cout << "ready" << std::endl;
    while (dbus_connection_read_write(bus.Get(), -1))
        while (DBusMessage* const call = dbus_connection_pop_message(bus.Get())) {
            if (dbus_message_get_type(call) == DBUS_MESSAGE_TYPE_METHOD_CALL) {
                DBusMessage* const answer = dbus_message_new_method_return(call);
                dbus_connection_send(bus.Get(), answer, nullptr);
                dbus_message_unref(answer);
            }
            dbus_message_unref(call);
        }
    return 0;
}

bool CallOnBus(const Bus& bus) {
    DBusMessage* const call = dbus_message_new_method_call(kBusName, "/", kBusName, "Take");
    const char* const text = g_text.c_str();
    dbus_message_append_args(call, DBUS_TYPE_STRING, &text, DBUS_TYPE_INVALID);
    DBusMessage* const answer = dbus_connection_send_with_reply_and_block(bus.Get(), call, -1, nullptr);
    dbus_message_unref(call);
    if (answer) dbus_message_unref(answer);
    return answer;
}

void SessionBus(benchmark::State& state) {
    const std::string address = "unix:path=" + (TheScratch() / "bus");
    CProcess daemon, child;
    daemon.Start("dbus-daemon", {"--session", "--nofork", "--nopidfile", CString("--address=" + address)});
    {
        const Bus bus(address);
        StartChild(child, "AnswerOnBus", {CString(address)});
        LineFrom(child);
        for (auto _ : state)
            if (!CallOnBus(bus)) return state.SkipWithError("not answered");
    }
    daemon.Kill();
    daemon.Wait();
    std::filesystem::remove(TheScratch() / "bus");
}

BENCHMARK(Ours)->Name("MessageRoundTrip/QvCommon")->UseRealTime();
BENCHMARK(BareSocket)->Name("MessageRoundTrip/a bare Unix socket")->UseRealTime();
BENCHMARK(SessionBus)->Name("MessageRoundTrip/D-Bus")->UseRealTime();

}  // namespace
