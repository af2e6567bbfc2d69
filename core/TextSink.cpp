#include "core/TextSink.h"

namespace qv {

char* TextSink::Flush(const char* at) {
    m_out.append(m_gathered, static_cast<std::size_t>(at - m_gathered));
    return m_gathered;
}

char* TextSink::AppendLong(char* at, std::string_view text) {
    if (text.size() > kWorthGathering) {
        at = Flush(at);
        m_out.append(text);
        return at;
    }
    at = WithRoom(at, text.size());
    std::memcpy(at, text.data(), text.size());
    return at + text.size();
}

}  // namespace qv
