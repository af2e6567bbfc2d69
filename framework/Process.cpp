#include "qvcommon/framework/Process.h"

#include <utility>

#include "framework/FileErrors.h"
#include "platform/Process.h"

CProcess::~CProcess() {
    End();
}

void CProcess::Start(const char* program, const CStringArray& arguments, UINT pipes) {
    End();
    std::vector<std::string> words;
    for (const CString& argument : arguments) words.push_back(argument.AsStd());
    qv::platform::ChildProcess child;
    qv::ThrowIfFailed(
        qv::platform::StartProcess(program, words, (pipes & pipeInput) != 0, (pipes & pipeOutput) != 0, child),
        program);
    m_process = child.process;
    m_input = child.input;
    m_output.Attach(child.output);
}

bool CProcess::WriteInput(std::string_view text) {
    return m_input != kNone && qv::platform::WriteToPipe(m_input, text.data(), text.size()).ok();
}

void CProcess::CloseInput() {
    // The written data has arrived, or WriteInput has reported the failure.
    if (m_input != kNone) qv::platform::CloseFile(std::exchange(m_input, kNone)).IgnoreError();
}

int CProcess::Wait() {
    CloseInput();
    int status = -1;
    // On failure the result remains -1.
    if (IsRunning()) qv::platform::WaitForProcess(std::exchange(m_process, kNone), status).IgnoreError();
    return status;
}

int CProcess::WaitInForeground() {
    CloseInput();
    int status = -1;
    // As in Wait.
    if (IsRunning()) qv::platform::WaitForForegroundProcess(std::exchange(m_process, kNone), status).IgnoreError();
    return status;
}

void CProcess::Kill() {
    if (IsRunning()) qv::platform::KillProcess(m_process);
}

void CProcess::End() {
    Kill();
    Wait();
    m_output.Abort();
}
