#include "qvcommon/framework/Process.h"

#include <utility>

#include "platform/Process.h"

CProcess::~CProcess() {
    End();
}

void CProcess::Start(const char* program, const CStringArray& arguments, UINT pipes) {
    End();
    std::vector<std::string> words;
    for (const CString& argument : arguments) words.push_back(argument.AsStd());
    qv::platform::ChildProcess child;
    const auto failure =
        qv::platform::StartProcess(program, words, (pipes & pipeInput) != 0, (pipes & pipeOutput) != 0, child);
    if (failure) AfxThrowFileException(static_cast<int>(failure.cause), static_cast<LONG>(failure.error), program);
    m_process = child.process;
    m_input = child.input;
    m_output.Attach(child.output);
}

bool CProcess::WriteInput(std::string_view text) {
    return m_input != kNone && !qv::platform::WriteToPipe(m_input, text.data(), text.size());
}

void CProcess::CloseInput() {
    if (m_input != kNone) qv::platform::CloseFile(std::exchange(m_input, kNone));
}

int CProcess::Wait() {
    CloseInput();
    int status = -1;
    if (IsRunning()) qv::platform::WaitForProcess(std::exchange(m_process, kNone), status);
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
