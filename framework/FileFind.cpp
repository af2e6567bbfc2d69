#include "qvcommon/framework/FileFind.h"

#include <algorithm>
#include <cstring>

#include "framework/FileErrors.h"
#include "framework/FindRecord.h"
#include "framework/PathText.h"
#include "platform/Path.h"

using qv::platform::FoundEntry;
using qv::platform::Status;

namespace {

template <std::size_t N>
void CopyText(char (&to)[N], const std::string& from) {
    const std::size_t length = std::min(from.size(), N - 1);
    std::memcpy(to, from.data(), length);
    to[length] = '\0';
}

/// Removes a folder's trailing separator, except from a root.
CString Unterminated(const CString& folder) {
    const std::string& path = folder.AsStd();
    const bool isRoot = path.size() < 2 || path.ends_with(":\\");
    return isRoot ? folder : folder.Left(folder.GetLength() - 1);
}

class LocalSearch : public qv::IFileSearch {
public:
    LocalSearch(const CString& root, ILeftOut* leftOut) : m_root(root), m_leftOut(leftOut) {}

    Status Start(const char* pattern, qv::platform::LastName lastName) {
        const Status started = m_search.Start(pattern, lastName);
        if (!started.ok()) Tell("", started);
        return started;
    }

    bool Next(QvFindData& entry) override {
        const bool found = m_search.Next(m_entry);
        for (const qv::platform::PassedOver& passedOver : m_search.TakePassedOver())
            Tell(passedOver.name, passedOver.status);
        if (found) qv::CopyRecord(m_entry, entry);
        return found;
    }

    CString GetLongName() const override {
        return m_entry.name.size() < sizeof QvFindData::cFileName ? CString() : CString(m_entry.name);
    }

    LONG GetError() const override { return m_search.LeftOut().ok() ? 0 : qv::OsErrorOf(m_search.LeftOut()); }

private:
    void Tell(const std::string& name, const Status& status) const {
        if (m_leftOut) m_leftOut->OnLeftOut(qv::LeftOutOf(m_root, {name, status}));
    }

    const CString m_root;
    ILeftOut* const m_leftOut;
    qv::platform::FileSearch m_search;
    FoundEntry m_entry;
};

}  // namespace

CString qv::SearchRoot(const CString& pattern) {
    const CString folder(std::string_view(pattern).substr(0, FindLastOf(pattern, kSeparators) + 1));
    CString root(platform::FullPath(folder.IsEmpty() ? "." : static_cast<const char*>(folder)));
    if (!EndsWithOneOf(root, "\\")) root += '\\';
    return root;
}

QvLeftOut qv::LeftOutOf(const CString& root, const platform::PassedOver& passedOver) {
    const CString path = passedOver.name.empty() ? Unterminated(root) : root + CString(passedOver.name);
    return QvLeftOut::OfError(path, static_cast<DWORD>(passedOver.status.error()));
}

void qv::CopyRecord(const FoundEntry& from, QvFindData& to) {
    to.dwFileAttributes = from.attributes;
    to.ftCreationTime = QvFileTime::FromSteps(from.created);
    to.ftLastAccessTime = QvFileTime::FromSteps(from.accessed);
    to.ftLastWriteTime = QvFileTime::FromSteps(from.written);
    to.nFileSizeHigh = static_cast<DWORD>(from.size >> 32);
    to.nFileSizeLow = static_cast<DWORD>(from.size & 0xFFFFFFFF);
    to.dwReserved0 = from.tag;
    CopyText(to.cFileName, from.name);
    CopyText(to.cAlternateFileName, from.shortName);
}

qv::IFileSearch::~IFileSearch() = default;

bool qv::IsLink(const QvFindData& entry) {
    return (entry.dwFileAttributes & platform::kReparsePoint) && (entry.dwReserved0 & platform::kStandsForAnotherPlace);
}

CFileFind::~CFileFind() = default;

BOOL CFileFind::FindFile(const char* pattern, DWORD options) {
    CFileFind::Close();
    const CString wanted = pattern ? pattern : "*.*";
    const CString root = qv::SearchRoot(wanted);
    auto search = std::make_unique<LocalSearch>(root, m_leftOut);
    const Status status = search->Start(
        wanted, options & refuseLinkedFolder ? qv::platform::LastName::NoLink : qv::platform::LastName::MayBeLink);
    if (!status.ok()) {
        m_error = qv::OsErrorOf(status);
        return 0;
    }
    return Begin(std::move(search), root);
}

BOOL CFileFind::Begin(std::unique_ptr<qv::IFileSearch> search, const CString& root) {
    Close();
    m_search = std::move(search);
    m_root = root;
    return Advance();
}

bool CFileFind::Advance() {
    std::unique_ptr<qv::FoundRecord> following = std::move(m_following);
    std::unique_ptr<qv::IFileSearch> search = std::move(m_search);  // an exception of the observer ends it
    if (!search) return false;
    if (!following) following = std::make_unique<qv::FoundRecord>();
    *following = {};
    if (!search->Next(*following)) {
        m_error = search->GetError();
        return false;
    }
    following->longName = search->GetLongName();
    m_following = std::move(following);
    m_search = std::move(search);
    return true;
}

BOOL CFileFind::FindNextFile() {
    std::swap(m_record, m_following);
    if (m_record) return Advance();
    m_following = nullptr;
    return 0;
}

void CFileFind::Close() {
    m_search.reset();
    m_record.reset();
    m_following.reset();
    m_root.Empty();
    m_error = 0;
}

LONG CFileFind::GetError() const {
    return m_error;
}

CString CFileFind::GetFileName() const {
    return m_record ? m_record->Name() : CString();
}

CString CFileFind::GetFilePath() const {
    return m_record ? m_root + m_record->Name() : m_root;
}

CString CFileFind::GetFileTitle() const {
    const CString name = GetFileName();
    return name.Left(static_cast<int>(std::min(name.AsStd().rfind('.'), name.AsStd().size())));
}

CString CFileFind::GetRoot() const {
    return m_root;
}

BOOL CFileFind::MatchesMask(DWORD mask) const {
    return m_record && (m_record->dwFileAttributes & mask);
}

BOOL CFileFind::IsDots() const {
    if (!IsDirectory()) return 0;
    const std::string_view name = m_record->cFileName;
    return name == "." || name == "..";
}

BOOL CFileFind::IsLink() const {
    return m_record && qv::IsLink(*m_record);
}

QvFileTime CFileFind::GetCreationTime() const {
    return m_record ? m_record->ftCreationTime : QvFileTime();
}

QvFileTime CFileFind::GetLastWriteTime() const {
    return m_record ? m_record->ftLastWriteTime : QvFileTime();
}
