#include "tools/qv/Lines.h"

#include <utility>

#include "qvcommon/framework/StandardStreams.h"

namespace qv::tool {

Lines::~Lines() {
    try {
        Write();
    } catch (CException* error) {
        error->Delete();
    }
}

void Lines::Add(const std::string& line) {
    constexpr std::size_t enough = 64 * 1024;
    (m_text += line) += '\n';
    if (m_text.size() >= enough) Write();
}

void Lines::Write() {
    AfxWriteStandardOutput(std::exchange(m_text, {}));
}

}  // namespace qv::tool
