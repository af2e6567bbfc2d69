#include "qvcommon/Checksum.h"

#include <deque>

#include "core/Crc32.h"
#include "core/FileCrc.h"

using qv::Executor;
using qv::FileCrc;
using qv::Task;

namespace {

/// A thread's result for a file; empty for a large one, which all threads process together.
struct Summed {
    std::uint32_t crc = 0;
    std::uint64_t length = 0;
    std::unique_ptr<FileCrc> large = {};
};

Summed SumUnlessLarge(const CString& path) {
    auto file = std::make_unique<FileCrc>(path);
    if (file->IsLarge()) return {.large = std::move(file)};
    const std::uint32_t crc = file->Sum();
    return {.crc = crc, .length = file->Length()};
}

/// The files, including a bounded number read ahead of the current one.
class FilesAhead {
public:
    explicit FilesAhead(const CStringArray& paths) : m_paths(paths) {}

    unsigned long Next(IChecksums& checksums) {
        constexpr std::size_t kMostAhead = 16;
        if (m_ahead.size() <= kMostAhead / 2)  // wakes a thread for several files at once
            while (m_ahead.size() < kMostAhead && m_started < m_paths.GetSize())
                m_ahead.push_back(m_executor.Start([path = m_paths[m_started++]] { return SumUnlessLarge(path); }));
        Task<Summed> next = std::move(m_ahead.front());
        m_ahead.pop_front();
        const Summed summed = next.Get();
        if (summed.large) return summed.large->Sum(m_executor, [&](std::uint64_t count) { checksums.OnBytes(count); });
        checksums.OnBytes(summed.length);
        return summed.crc;
    }

private:
    const CStringArray& m_paths;
    int m_started = 0;
    Executor m_executor;
    std::deque<Task<Summed>> m_ahead;
};

}  // namespace

unsigned long MemCRC(const char* data, int length) {
    return length > 0 ? MemCRC(std::string_view(data, static_cast<std::size_t>(length))) : 0;
}

unsigned long MemCRC(std::string_view data) {
    return qv::Crc32(0, data.data(), data.size());
}

unsigned long ContinueCRC(unsigned long crc, std::string_view data) {
    return qv::Crc32(static_cast<std::uint32_t>(crc), data.data(), data.size());
}

unsigned long FileCRC(std::string_view path) try {
    FileCrc file{CString(path)};
    if (!file.IsLarge()) return file.Sum();
    Executor executor;
    return file.Sum(executor, [](std::uint64_t) {});
} catch (CFileException* error) {
    error->Delete();
    return 0;
}

IChecksums::~IChecksums() = default;
void IChecksums::OnBytes(std::uint64_t) {}

void FileCRCs(const CStringArray& paths, IChecksums& checksums) {
    FilesAhead files(paths);
    for (int i = 0; i < paths.GetSize(); ++i) {
        unsigned long crc = 0;
        std::unique_ptr<CFileException, void (*)(CFileException*)> failure(nullptr,
                                                                           [](CFileException* e) { e->Delete(); });
        try {
            crc = files.Next(checksums);
        } catch (CFileException* error) {
            failure.reset(error);
        }
        checksums.OnChecksum(i, crc, failure.get());
    }
}
