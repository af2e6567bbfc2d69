#include "tools/qv/Crc.h"

#include "qvcommon/Checksum.h"
#include "qvcommon/framework/StandardStreams.h"
#include "tools/qv/Documents.h"
#include "tools/qv/Visible.h"

namespace qv::tool {
namespace {

class OneChecksum : public IChecksums {
public:
    explicit OneChecksum(Progress& progress) : m_progress(progress) {}

    void OnBytes(std::uint64_t count) override { m_progress.AddBytes(count); }
    void OnChecksum(int, unsigned long crc, CFileException* failure) override {
        if (failure) AfxThrowFileException(failure->m_cause, failure->m_lOsError, failure->m_strFileName);
        m_crc = crc;
    }
    unsigned long Crc() const { return m_crc; }

private:
    Progress& m_progress;
    unsigned long m_crc = 0;
};

using Next = std::function<void(std::size_t, std::optional<unsigned long>)>;

class EachChecksum : public IChecksums {
public:
    EachChecksum(std::size_t first, Progress& progress, const Next& next)
        : m_first(first), m_progress(progress), m_next(next) {}

    void OnBytes(std::uint64_t count) override { m_progress.AddBytes(count); }
    void OnChecksum(int index, unsigned long crc, CFileException* failure) override {
        if (failure) Complain(MessageOf(*failure));
        m_progress.Add();
        m_next(m_first + static_cast<std::size_t>(index), failure ? std::nullopt : std::optional(crc));
    }

private:
    const std::size_t m_first;
    Progress& m_progress;
    const Next& m_next;
};

std::optional<unsigned long> CrcOfStandardInput() try {
    std::vector<char> buffer(1 << 16);
    unsigned long crc = 0;
    while (const std::size_t count = AfxReadStandardInput(buffer.data(), buffer.size()))
        crc = ContinueCRC(crc, {buffer.data(), count});
    return crc;
} catch (CFileException* error) {
    Complain(MessageOf(*error));
    error->Delete();
    return std::nullopt;
}

}  // namespace

unsigned long CrcOf(const std::string& path, Progress& progress) {
    OneChecksum checksum(progress);
    FileCRCs({path}, checksum);
    return checksum.Crc();
}

void SumEach(const std::vector<std::string>& paths, Progress& progress, const Next& next) {
    for (std::size_t first = 0; first < paths.size();) {
        CStringArray files;
        std::size_t end = first;
        for (; end < paths.size() && !IsStandardStream(paths[end]); ++end) files.Add(paths[end]);
        EachChecksum checksums(first, progress, next);
        FileCRCs(files, checksums);
        if (end < paths.size()) {
            next(end, CrcOfStandardInput());
            progress.Add();
            ++end;
        }
        first = end;
    }
}

}  // namespace qv::tool
