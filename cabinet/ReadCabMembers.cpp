#include <utility>

#include "cabinet/Manifest.h"
#include "cabinet/MemberName.h"
#include "cabinet/ReadCabContext.h"
#include "framework/PathText.h"
#include "platform/DosTime.h"
#include "platform/FileStatus.h"
#include "qvcommon/framework/StdioFile.h"

using namespace qv::cabinet;

namespace {

constexpr std::uint32_t kLargestManifest = 32 << 20;

qv::platform::FileStamp StampOf(const QvCabinetNotification& member) {
    return {qv::platform::FromDosTime({member.date, member.time}), member.attributes & unsigned{kFileAttributes}};
}

}  // namespace

/// Returns the entry after the substitutions from `first` on.
CString CReadCab::Substituted(CString entry, int first) const {
    for (int i = first; i < m_sources.GetSize(); ++i) entry.Replace(m_sources[i], m_targets[i]);
    return entry;
}

/// Returns the folders that may receive members.
CStringArray CReadCab::Roots() const {
    if (!m_destPath.IsEmpty()) return {m_destPath};
    CStringArray roots;
    for (int i = 0; i < m_targets.GetSize(); ++i)
        if (qv::EndsWithOneOf(m_targets[i], qv::kSeparators)) roots.Add(Substituted(m_targets[i], i + 1));
    if (roots.IsEmpty()) roots.Add("");
    return roots;
}

/// Returns false for a path outside all of them.
bool CReadCab::FindTarget(const CString& path, Target& target) const {
    for (const CString& root : Roots()) {
        if (!path.AsStd().starts_with(root.AsStd())) continue;
        std::optional<std::vector<std::string>> names = SafeNames(path.Mid(root.GetLength()));
        if (!names) continue;
        target = {root, std::move(*names)};
        return true;
    }
    return false;
}

int CReadCab::OpenManifest() {
    CTempFile& file = m_context->manifest.emplace().file;
    file.Create();
    return static_cast<int>(m_context->Open(file.GetFilename(), OpenMode::Create));
}

void CReadCab::LoadManifest() {
    CString text, line;
    CStdioFile file(m_context->manifest.value().file.GetFilename(), CFile::modeRead | CFile::typeText);
    while (file.ReadString(line)) (text += line) += '\n';
    file.Close();
    m_context->manifest.reset();
    std::optional<CStringArray> entries = ReadManifest(text);
    if (!entries) throw EngineFailure{ReadError::Corrupt};
    const bool isForeign = IsInForeignCodePage(text);
    for (CString& entry : *entries) {
        if (entry.IsEmpty()) throw EngineFailure{ReadError::Corrupt};
        if (isForeign && !ConvertFromUtf8(entry)) {
            Tell(Substituted(entry, 0), "the code page cannot hold the name");
            if (!qv::EndsWithOneOf(entry, "\\")) m_manifest.Add("");  // keeps the place of a skipped member
            continue;
        }
        if (!qv::EndsWithOneOf(entry, "\\")) {
            m_manifest.Add(std::move(entry));
            continue;
        }
        Target folder;
        m_context->subject = Substituted(entry, 0);
        if (!FindTarget(m_context->subject, folder)) throw EngineFailure{ReadError::Corrupt};
        if (!m_dryRun && !m_context->MakeFolder(folder)) throw EngineFailure{ReadError::CannotWriteTarget};
        m_context->subject.Empty();
    }
}

void CReadCab::Tell(const CString& path, const CString& reason) const {
    if (m_leftOut) m_leftOut->OnLeftOut({path, QvLeftOut::failed, 0, reason});
}

void CReadCab::TellOfMissingMembers() const {
    for (int i = m_nextManifest; i < m_manifest.GetSize(); ++i)
        if (!m_manifest[i].IsEmpty()) Tell(Substituted(m_manifest[i], 0), "not in the archive");
}

int CReadCab::NotifyCopyFile(QvCabinetNotification& notification) {
    if (notification.folder != m_lastFolder) NotifyChangeFolder(notification);
    if (m_useManifest && !m_manifestLoaded) {
        // A skipped manifest cannot map the members.
        if (std::exchange(m_context->opensManifest, true)) throw EngineFailure{ReadError::UnknownCompression};
        if (notification.size > kLargestManifest) throw EngineFailure{ReadError::Corrupt};
        return OpenManifest();
    }
    CString& path = m_context->subject;
    path.Empty();
    if (!m_useManifest) {
        path = m_destPath + notification.name;
    } else if (m_nextManifest < m_manifest.GetSize()) {
        const CString& entry = m_manifest[m_nextManifest++];
        if (entry.IsEmpty()) return 0;
        path = Substituted(entry, 0);
    }
    Target target;
    const bool isFile = !path.IsEmpty() && !qv::EndsWithOneOf(path, qv::kSeparators);
    if (!isFile || !FindTarget(path, target)) throw EngineFailure{ReadError::Corrupt};
    return m_dryRun ? 0 : static_cast<int>(m_context->Create(target));
}

int CReadCab::NotifyCloseFileInfo(QvCabinetNotification& notification) {
    const qv::platform::FileStamp stamp = StampOf(notification);
    const bool stampsTarget = !m_useManifest || m_restoreTimes;
    if (!m_context->Complete(notification.file, stampsTarget ? &stamp : nullptr)) return 0;
    m_context->subject.Empty();
    if (!stampsTarget && !m_destPath.IsEmpty()) {
        if (const auto names = SafeNames(notification.name)) m_context->Stamp({m_destPath, *names}, stamp);
    }
    NotifyCopyComplete(notification);
    return 1;
}

void CReadCab::NotifyCopyComplete(QvCabinetNotification&) {
    if (m_manifestLoaded || !m_useManifest) return;
    m_manifestLoaded = 1;
    LoadManifest();
}
