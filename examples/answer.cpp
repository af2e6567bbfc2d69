// Two programs that send each other texts, first part: answers in capitals what `ask` sends, until it gets "bye".
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
    // What arrives, with its sender. A program that answers nobody overrides OnUserMessage, which gets the text alone.
    void OnCopyData(HWND sender, const CCopyData& data) override {
        CString text(std::string_view(static_cast<const char*>(data.m_data), data.m_length));
        m_bye = text == "bye";
        text.MakeUpper();
        // The sender waits in its own Send until this member returns, and takes the answer meanwhile.
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

    // One listener of a name exists at most among the programs of a user. The name is free again when its program ends or
    // dies, so this is also a way to be the only instance of a program.
    Answerer answerer;
    if (!answerer.Create(argv[1], 0)) {
        std::fprintf(stderr, "somebody is %s already\n", argv[1]);
        return 1;
    }
    std::puts("listening");
    std::fflush(stdout);

    // Texts arrive on this thread while it pumps messages. A program with a message loop of its own on Windows needs none.
    while (!answerer.m_bye) answerer.PumpMessages(60'000);
}
