#include "tools/qv/Progress.h"

#include <atomic>
#include <cstdio>

#include "qvcommon/framework/StandardStreams.h"

namespace qv::tool {

namespace {

std::atomic<bool> g_isDrawn = false;

}  // namespace

void ClearProgressLine() {
    if (g_isDrawn.exchange(false)) std::fprintf(stderr, "\r%60s\r", "");
}

Progress::Progress(const char* what, std::size_t total) : m_what(what), m_total(total), m_shown(AfxIsErrorTerminal()) {}

Progress::~Progress() {
    ClearProgressLine();
}

void Progress::Add(std::size_t count) {
    m_count += count;
    if (!m_shown) return;
    const auto now = std::chrono::steady_clock::now();
    if (now < m_next) return;
    m_next = now + std::chrono::milliseconds(100);
    g_isDrawn = true;
    if (m_total)
        std::fprintf(stderr, "\r%zu of %zu %s", m_count, m_total, m_what);
    else
        std::fprintf(stderr, "\r%zu %s", m_count, m_what);
}

}  // namespace qv::tool
