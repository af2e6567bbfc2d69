// Two programs that send each other texts, part two: sends texts to the program that listens to a name.
//
//   ask NAME TEXT...

#include <clocale>
#include <cstdio>

#include "qvcommon/Exceptions.h"
#include "qvcommon/UserMessages.h"

class Asker : public CUserMessageListener {
public:
    void OnUserMessage(const CString& text) override { m_answer = text; }
    CString m_answer;
};

int main(int argc, char** argv) {
    QvReportUncaught();
    std::setlocale(LC_ALL, "");
    if (argc < 3) {
        std::fputs("usage: ask NAME TEXT...\n", stderr);
        return 2;
    }

    // To receive answers, listen as well. This name is unique to the process, so any number of askers may run.
    Asker asker;
    if (!asker.Create("ask", 1)) {
        std::fputs("cannot listen\n", stderr);
        return 1;
    }

    for (int i = 2; i < argc; ++i) {
        // Returns when the other program has handled the text. Its answer has arrived by then: a thread that waits for
        // its text to be handled still receives texts, so two programs that send to each other do not deadlock.
        if (!asker.SendUserMessage(argv[1], 0, CString(argv[i]), asker.m_hWnd)) {
            std::fprintf(stderr, "no listener has the name %s\n", argv[1]);
            return 1;
        }
        std::printf("%s: %s\n", argv[i], asker.m_answer.AsStd().c_str());
    }
}
