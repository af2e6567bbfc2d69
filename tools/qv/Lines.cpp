#include "tools/qv/Lines.h"

#include <utility>

#include "qvcommon/framework/StandardStreams.h"
#include "tools/qv/Progress.h"
#include "tools/qv/Visible.h"

namespace qv::tool {

Lines::~Lines() {
    try {
        Write();
    } catch (CException* error) {
        error->Delete();
    }
}

void Lines::Add(const std::string& line) {
    m_text += line;
    End();
}

void Lines::AddName(const std::string& name, std::string_view before, std::string_view after) {
    static const bool isTerminal = AfxIsOutputTerminal();
    m_text += before;
    m_text += m_end && isTerminal ? VisibleOnTerminal(name) : name;
    m_text += after;
    End();
}

void Lines::End() {
    constexpr std::size_t enough = 64 * 1024;
    m_text += m_end;
    if (m_text.size() >= enough || std::chrono::steady_clock::now() >= m_next) Write();
}

void Lines::Write() {
    m_next = std::chrono::steady_clock::now() + std::chrono::milliseconds(100);
    ClearProgressLine();
    const std::string text = std::exchange(m_text, {});  // also if this fails
    m_text.reserve(text.capacity());
    AfxWriteStandardOutput(text);
}

bool LiveLines::Write(const std::string& line) {
    if (m_failure) return false;
    try {
        AfxWriteStandardOutput(line + m_end);
        return true;
    } catch (CFileException* error) {
        m_failure = std::make_unique<CFileException>(*error);
        error->Delete();
        return false;
    }
}

void LiveLines::Check() const {
    if (m_failure) AfxThrowFileException(m_failure->m_cause, m_failure->m_lOsError, m_failure->m_strFileName);
}

}  // namespace qv::tool
