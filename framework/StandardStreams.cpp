#include "qvcommon/framework/StandardStreams.h"

#include <algorithm>
#include <limits>

#include "framework/FileErrors.h"
#include "platform/Process.h"
#include "platform/StandardStreams.h"

namespace {

constexpr const char* kInput = "standard input";
constexpr std::size_t kLongestText = std::numeric_limits<int>::max(), kChunk = 1 << 16;

}  // namespace

void AfxPrepareConsole() {
    qv::platform::OccupyStandardStreams();
    qv::platform::ResetChildSignal();
}

std::size_t AfxReadStandardInput(void* buffer, std::size_t size) {
    std::size_t count = 0;
    qv::ThrowIfFailed(qv::platform::ReadBytes(qv::platform::StandardInput(), buffer, size, count), kInput);
    return count;
}

CString AfxReadStandardInput() {
    std::string text;
    const std::size_t longest = std::min(kLongestText, text.max_size() - kChunk);
    for (std::size_t size = 0, count = 0;; size += count) {
        if (size > longest) AfxThrowFileException(CFileException::generic, -1, kInput);
        if (text.size() < size + kChunk) text.resize(std::min(2 * size, longest) + kChunk);
        count = AfxReadStandardInput(text.data() + size, text.size() - size);
        if (count == 0) {
            text.resize(size);
            return CString(std::move(text));
        }
    }
}

void AfxWriteStandardOutput(std::string_view text) {
    qv::ThrowIfFailed(qv::platform::WriteBytes(qv::platform::StandardOutput(), text.data(), text.size()),
                      "standard output");
}

bool AfxIsReaderGone(const CFileException& error) {
    return error.m_lOsError > 0 && qv::platform::IsReaderGone(static_cast<std::uint32_t>(error.m_lOsError));
}

bool AfxIsOutputTerminal() {
    return qv::platform::IsOutputTerminal();
}

bool AfxIsErrorTerminal() {
    return qv::platform::IsErrorTerminal();
}
