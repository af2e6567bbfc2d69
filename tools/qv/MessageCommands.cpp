#include <memory>

#include "qvcommon/UserMessages.h"
#include "tools/qv/Commands.h"
#include "tools/qv/Json.h"
#include "tools/qv/Lines.h"

namespace qv::tool {
namespace {

struct Options {
    std::string name, text;
    unsigned count = 0;
    bool json = false, zero = false;
};

// Prints each text as a line.
class Printer : public CUserMessageListener {
public:
    explicit Printer(const Options& options) : m_lines(options.zero ? '\0' : '\n'), m_options(options) {}

    unsigned m_printed = 0;
    bool m_failed = false;
    LiveLines m_lines;

    void OnUserMessage(const CString& text) override {
        m_failed = !m_lines.Write(m_options.json ? JsonOf(text.AsStd()) : text.AsStd());
        ++m_printed;
    }

private:
    std::string JsonOf(const std::string& text) const {
        return JsonObject().Text("name", m_options.name).Text("text", text).TimeNow("time").Line();
    }

    const Options& m_options;
};

void Listen(const Options& options) {
    constexpr DWORD aWhile = 60'000;
    Printer listener(options);
    if (!listener.Create(options.name.c_str(), 0)) {
        if (CUserMessageListener::DoesListenerExist(options.name.c_str(), 0))
            throw CommandError("another program already listens as " + options.name);
        throw CommandError("cannot listen as " + options.name);
    }
    while (!listener.m_failed && (options.count == 0 || listener.m_printed < options.count))
        listener.PumpMessages(aWhile);
    listener.m_lines.Check();
}

void Send(const Options& options) {
    if (!CUserMessageListener::SendUserMessage(options.name.c_str(), 0, CString(options.text)))
        throw CommandError("no program listens as " + options.name);
}

}  // namespace

void AddListen(Command app) {
    Command command = app.Add("listen", "Print the messages that are sent to a name");
    const auto options = std::make_shared<Options>();
    command.AddOption("NAME", options->name, "The name; one program at a time listens to it").Require();
    command.AddOption("-c,--count", options->count, "Exit after this many messages");
    command.AddFlag("-0,--null", options->zero, "End each message with a zero byte");
    command.AddFlag("-j,--json", options->json, "Print one JSON object per message: name, text, time");
    command.AddExample("qv listen builds --count 1");
    command.SetAction([options] { Listen(*options); });
}

void AddSend(Command app) {
    Command command = app.Add("send", "Send a message to the program that listens to a name");
    const auto options = std::make_shared<Options>();
    command.AddOption("NAME", options->name, "The name").Require();
    command.AddOption("TEXT", options->text, "The text").Require();
    command.SetNotes("Returns when the message has been handled.");
    command.AddExample("qv send builds \"all green\"");
    command.SetAction([options] { Send(*options); });
}

}  // namespace qv::tool
