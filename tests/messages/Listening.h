#pragma once

#include <random>
#include <string>
#include <vector>

#include "qvcommon/UserMessages.h"
#include "tests/support/Child.h"

inline CString UniqueName() {
    return CString("qvtest/.%" + std::to_string(std::random_device()()));
}

// A name that needs no escapes in a file name.
inline CString PlainName() {
    return CString("qvtest" + std::to_string(std::random_device()()));
}

inline int Send(const CString& name, const std::string& text) {
    return CUserMessageListener::SendUserMessage(name, 0, CString(text));
}

class Listener : public CUserMessageListener {
public:
    using CUserMessageListener::GetWindowClassName;

    void OnUserMessage(const CString& text) override { m_texts.push_back(text.AsStd()); }
    void OnCopyData(HWND sender, const CCopyData& data) override {
        m_sender = sender;
        CUserMessageListener::OnCopyData(sender, data);
    }

    std::vector<std::string> m_texts;
    HWND m_sender = nullptr;
};

/// A child process that listens to the name.
class ListeningChild {
public:
    explicit ListeningChild(const CString& name) {
        StartChild(process, "Listen", {name});
        first = LineFrom(process);
    }
    void Kill() {
        process.Kill();
        process.Wait();
    }
    /// The size of the next text that it receives.
    std::string Received() { return LineFrom(process); }

    CProcess process;
    std::string first;
};
