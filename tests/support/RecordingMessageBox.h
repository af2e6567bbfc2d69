#pragma once

#include <string>
#include <vector>

#include "qvcommon/framework/MessageBox.h"

/// Answers every message box with `answer` and records what is shown while it lives.
class RecordingMessageBox : public IMessageBox {
public:
    struct Shown {
        std::string text;
        UINT style;
    };

    explicit RecordingMessageBox(int answer = 1) : m_answer(answer), m_before(AfxSetMessageBox(this)) {}
    ~RecordingMessageBox() override { AfxSetMessageBox(m_before); }
    RecordingMessageBox(const RecordingMessageBox&) = delete;
    RecordingMessageBox& operator=(const RecordingMessageBox&) = delete;

    int Show(const char* text, UINT style) override {
        shown.push_back({text, style});
        return m_answer;
    }

    std::vector<Shown> shown;

private:
    int m_answer;
    IMessageBox* m_before;
};
