// Two programs that send each other texts, part one: answers what `ask` sends in capitals, until it receives "bye".
//
//   answer NAME

#include <clocale>
#include <cstdio>

#include "qvcommon/Exceptions.h"
#include "qvcommon/UserMessages.h"

class Answerer : public CUserMessageListener {
public:
    bool m_bye = false;

protected:
    // Receives each text with its sender. A program that does not answer overrides OnUserMessage, which gets only the
    // text.
    void OnCopyData(HWND sender, const CCopyData& data) override {
        CString text(std::string_view(static_cast<const char*>(data.m_data), data.m_length));
        m_bye = text == "bye";
        text.MakeUpper();
        // The sender waits in its own Send until this member returns, and meanwhile accepts the answer.
        QvSendIpcMessage(sender, text, m_hWnd);
    }
};

int main(int argc, char** argv) {
    QvReportUncaught();
    std::setlocale(LC_ALL, "");
    if (argc != 2) {
        std::fputs("usage: answer NAME\n", stderr);
        return 2;
    }

    // Each user can have one listener per name. The name is free again when its program ends or crashes, so this is
    // also a way to run only one instance of a program.
    Answerer answerer;
    if (!answerer.Create(argv[1], 0)) {
        std::fprintf(stderr, "another program already listens as %s\n", argv[1]);
        return 1;
    }
    std::puts("listening");
    std::fflush(stdout);

    // Texts arrive on this thread while it pumps messages. On Windows, a program with its own message loop need not do
    // so.
    while (!answerer.m_bye) answerer.PumpMessages(60'000);
}
