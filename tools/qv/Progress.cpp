#include "tools/qv/Progress.h"

#include <algorithm>
#include <atomic>
#include <cstdio>

#include "qvcommon/FileFinder.h"
#include "qvcommon/framework/File.h"
#include "qvcommon/framework/StandardStreams.h"
#include "tools/qv/Visible.h"

namespace qv::tool {
namespace {

constexpr int kWidth = 79;

std::atomic<bool> g_isDrawn = false;
bool g_isQuiet = false;

std::string Megabytes(double bytes) {
    char text[32];
    std::snprintf(text, sizeof text, "%.1f MB", bytes / 1e6);
    return text;
}

std::string MinutesAndSeconds(double seconds) {
    constexpr double kMost = 359'999;  // 99:59:59 in minutes and seconds
    const auto whole = static_cast<unsigned>(std::clamp(seconds, 0.0, kMost));
    char text[32];
    std::snprintf(text, sizeof text, "%u:%02u", whole / 60, whole % 60);
    return text;
}

}  // namespace

void Complain(std::string_view message) {
    ClearProgressLine();
    const std::string line = AfxIsErrorTerminal() ? VisibleOnTerminal(message) : std::string(message);
    std::fprintf(stderr, "qv: %s\n", line.c_str());
}

void AddQuiet(Command command, const char* description) {
    command.AddFlag("-q,--quiet", g_isQuiet, description);
}

bool IsQuiet() {
    return g_isQuiet;
}

void Note(const std::string& message) {
    if (!g_isQuiet) Complain(message);
}

void ClearProgressLine() {
    if (g_isDrawn.exchange(false)) std::fprintf(stderr, "\r%*s\r", kWidth, "");
}

Progress::Progress(const char* what) : m_what(what), m_shown(!g_isQuiet && AfxIsErrorTerminal()) {}

Progress::~Progress() {
    ClearProgressLine();
}

void Progress::Add(std::size_t count) {
    m_count += count;
    Draw();
}

void Progress::AddBytes(std::uint64_t bytes) {
    m_bytes += bytes;
    Draw();
}

std::string Progress::BytesAndTime(Clock::time_point now) const {
    const double done = static_cast<double>(m_bytes), total = static_cast<double>(std::max(m_bytes, m_totalBytes));
    const double seconds = std::chrono::duration<double>(now - m_started).count();
    std::string text = ", " + Megabytes(done);
    if (m_totalBytes) text += " of " + Megabytes(total);
    if (done <= 0 || seconds < 1) return text;
    text += ", " + Megabytes(done / seconds) + "/s";
    return m_totalBytes ? text + ", " + MinutesAndSeconds((total - done) * seconds / done) + " left" : text;
}

void Progress::Draw() {
    if (!m_shown) return;
    const auto now = Clock::now();
    if (now < m_next) return;
    m_next = now + std::chrono::milliseconds(100);
    g_isDrawn = true;
    std::string line = std::to_string(m_count) + ' ' + m_what;
    if (m_bytes || m_totalBytes) line += BytesAndTime(now);
    std::fprintf(stderr, "\r%-*s", kWidth, line.c_str());
}

std::uint64_t BytesOf(const std::vector<std::string>& files) {
    std::uint64_t bytes = 0;
    CFileStatus status;
    for (const std::string& file : files)
        if (CFile::GetStatus(file.c_str(), status)) bytes += static_cast<std::uint64_t>(status.m_size);
    return bytes;
}

std::uint64_t BytesIn(const std::string& folder, bool recurse) {
    FileFinder finder;
    finder.SetSearchPath(folder.c_str());
    finder.SetSearchMask("*");
    finder.SetRecurse(recurse);
    finder.Discover();
    std::uint64_t bytes = 0;
    for (const CFoundInfo& file : finder.GetFoundInfo()) bytes += file.GetLength64();
    return bytes;
}

}  // namespace qv::tool
