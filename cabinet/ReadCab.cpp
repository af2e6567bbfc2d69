#include <algorithm>

#include "cabinet/CabinetReader.h"
#include "cabinet/DiskFiles.h"
#include "cabinet/Manifest.h"
#include "cabinet/MemberName.h"
#include "cabinet/TargetFolder.h"
#include "platform/DosTime.h"
#include "qvcommon/Cabinet.h"
#include "qvcommon/Exceptions.h"
#include "qvcommon/FileUtils.h"
#include "qvcommon/framework/StdioFile.h"

using namespace qv::cabinet;

namespace {

constexpr int kSeverity = 16;
constexpr std::uint32_t kLargestManifest = 32 << 20;

bool IsFolderText(std::string_view path) {
    return path.ends_with('\\') || path.ends_with('/');
}

qv::platform::FileStamp StampOf(const QvCabinetNotification& member) {
    return {qv::platform::FromDosTime({member.date, member.time}), member.attributes & unsigned{kFileAttributes}};
}

}  // namespace

/// A place in a target folder.
struct CReadCab::Target {
    CString root;
    std::vector<std::string> names;
};

class CReadCab::Context : public OnDisk<IReaderCallbacks> {
public:
    explicit Context(CReadCab& owner) : reader(*this, owner.m_error), m_owner(owner) {}

    std::intptr_t Notify(QvCabinetNotification::Type type, QvCabinetNotification& notification) override {
        if (notification.attributes & kNameIsUtf8) {
            notification.name = FromMemberName(notification.name);
            notification.attributes &= static_cast<std::uint16_t>(~kNameIsUtf8);
        }
        return m_owner.Notify(type, notification);
    }
    /// Also the end of a member that did not get complete.
    bool Close(Handle file) override {
        const bool closed = OnDisk::Close(file);
        if (file == m_staged) {
            m_staged = kNoHandle;
            m_folder.Discard();
        }
        return closed;
    }

    /// kNoHandle when the file cannot be made.
    Handle Create(const Target& target) {
        qv::platform::FileHandle file = qv::platform::kNoFile;
        m_folder.SetRoot(target.root);
        if (m_folder.Create(target.names, file)) return kNoHandle;
        m_staged = m_files.Add(file, target.root + target.names.back().c_str());
        return m_staged;
    }
    /// Closes a member's file; one that Create made takes its name.
    bool Complete(Handle file, const qv::platform::FileStamp* stamp) {
        if (file != m_staged) return Close(file);
        if (stamp) qv::platform::StampFile(m_files.SystemHandle(file), *stamp);
        m_staged = kNoHandle;
        if (OnDisk::Close(file)) return !m_folder.Commit();
        m_folder.Discard();
        return false;
    }
    void Stamp(const Target& target, const qv::platform::FileStamp& stamp) {
        m_folder.SetRoot(target.root);
        m_folder.Stamp(target.names, stamp);
    }
    bool MakeFolder(const Target& target) {
        m_folder.SetRoot(target.root);
        return !m_folder.MakeFolder(target.names);
    }

    CabinetReader reader;

private:
    CReadCab& m_owner;
    TargetFolder m_folder;
    Handle m_staged = kNoHandle;
};

CReadCab::CReadCab() = default;

CReadCab::~CReadCab() = default;

void CReadCab::Fail(int error) {
    m_error = {error, 0, 1};
    CloseHfdi();
    throw new CVorbexException(error, kSeverity, GetFdiErrorString(error));
}

void CReadCab::ReadCab(const char* path) {
    const CString cabinet = WithBackslashes(path);
    m_manifest.RemoveAll();
    m_manifestLoaded = 0;
    m_nextManifest = 0;
    if (!m_context) OpenHfdi();
    if (!m_context) Fail(NumberOf(ReadError::NoMemory));
    bool copied = false;
    try {
        copied =
            m_context->reader.Copy(CFileUtils::GetFilenameFromPath(cabinet), CFileUtils::GetDirectoryFromPath(cabinet),
                                   {m_limits.members, m_limits.totalSize, m_limits.expansion});
    } catch (...) {
        CloseHfdi();
        throw;
    }
    if (!copied) Fail(m_error.error);
    CloseHfdi();
}

int CReadCab::GetCabInfo(const char* path, QvCabinetInfo& info) {
    Context context(*this);
    return context.reader.IsCabinet(WithBackslashes(path), info);
}

void CReadCab::OpenHfdi() {
    m_error = {};
    m_context = std::make_unique<Context>(*this);
}

void CReadCab::CloseHfdi() {
    m_context.reset();
}

void CReadCab::SetDestPath(const char* path) {
    m_destPath = CFileUtils::TerminateDir(path);
}

CString CReadCab::GetDestPath() const {
    return m_destPath;
}

void CReadCab::UseManifest(int use) {
    m_useManifest = use;
}

void CReadCab::AddSubstitution(const char* source, const char* target) {
    m_sources.Add(std::string_view(source ? source : ""));
    m_targets.Add(std::string_view(target ? target : ""));
}

const QvCabinetLimits& CReadCab::GetLimits() const {
    return m_limits;
}

void CReadCab::SetLimits(const QvCabinetLimits& limits) {
    m_limits = limits;
}

void CReadCab::SetRestoreTimes(int restore) {
    m_restoreTimes = restore;
}

int CReadCab::Notify(int type, QvCabinetNotification& notification) {
    switch (type) {
        case QvCabinetNotification::cabinetInfo: return NotifyCabinetInfo(notification);
        case QvCabinetNotification::partialFile: return NotifyPartialFile(notification);
        case QvCabinetNotification::copyFile: return NotifyCopyFile(notification);
        case QvCabinetNotification::closeFileInfo: return NotifyCloseFileInfo(notification);
        case QvCabinetNotification::nextCabinet: return NotifyNextCabinet(notification);
        case QvCabinetNotification::enumerate: return NotifyEnumerate(notification);
        default: return 0;
    }
}

int CReadCab::NotifyCabinetInfo(QvCabinetNotification&) {
    return 0;
}

int CReadCab::NotifyPartialFile(QvCabinetNotification&) {
    return 0;
}

int CReadCab::NotifyNextCabinet(QvCabinetNotification&) {
    return 0;
}

int CReadCab::NotifyEnumerate(QvCabinetNotification&) {
    return 0;
}

void CReadCab::NotifyChangeFolder(QvCabinetNotification&) {}

/// The entry with the substitutions from the given one on.
CString CReadCab::Substituted(CString entry, int first) const {
    for (int i = first; i < m_sources.GetSize(); ++i) entry.Replace(m_sources[i], m_targets[i]);
    return entry;
}

/// Where members may go.
CStringArray CReadCab::Roots() const {
    if (!m_destPath.IsEmpty()) return {m_destPath};
    CStringArray roots;
    for (int i = 0; i < m_targets.GetSize(); ++i)
        if (IsFolderText(m_targets[i])) roots.Add(Substituted(m_targets[i], i + 1));
    if (roots.IsEmpty()) roots.Add("");
    return roots;
}

/// False for a path that lies outside.
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
    m_manifestFile.Create();
    return static_cast<int>(m_context->Open(m_manifestFile.GetFilename(), OpenMode::Create));
}

int CReadCab::NotifyCopyFile(QvCabinetNotification& notification) {
    if (notification.folder != m_lastFolder) NotifyChangeFolder(notification);
    if (m_useManifest && !m_manifestLoaded) {
        if (notification.size > kLargestManifest) throw EngineFailure{ReadError::Corrupt};
        return OpenManifest();
    }
    CString path;
    if (!m_useManifest)
        path = m_destPath + notification.name;
    else if (m_nextManifest < m_manifest.GetSize())
        path = Substituted(m_manifest[m_nextManifest++], 0);
    Target target;
    const bool isFile = !path.IsEmpty() && !IsFolderText(path);
    if (!isFile || !FindTarget(path, target)) throw EngineFailure{ReadError::Corrupt};
    return static_cast<int>(m_context->Create(target));
}

int CReadCab::NotifyCloseFileInfo(QvCabinetNotification& notification) {
    const qv::platform::FileStamp stamp = StampOf(notification);
    const bool stampsTarget = !m_useManifest || m_restoreTimes;
    if (!m_context->Complete(notification.file, stampsTarget ? &stamp : nullptr)) return 0;
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

void CReadCab::LoadManifest() {
    CString text, line;
    CStdioFile file(m_manifestFile.GetFilename(), CFile::modeRead | CFile::typeText);
    while (file.ReadString(line)) (text += line) += '\n';
    std::optional<CStringArray> entries = ReadManifest(text);
    if (!entries) throw EngineFailure{ReadError::Corrupt};
    for (CString& entry : *entries) {
        if (!entry.AsStd().ends_with('\\')) {
            m_manifest.Add(std::move(entry));
            continue;
        }
        Target folder;
        const CString path = Substituted(entry, 0);
        if (!FindTarget(path, folder)) throw EngineFailure{ReadError::Corrupt};
        if (!m_context->MakeFolder(folder)) throw EngineFailure{ReadError::CannotWriteTarget};
    }
}

CString CReadCab::GetFdiErrorString(int error) const {
    switch (static_cast<ReadError>(error)) {
        case ReadError::None: return "No error";
        case ReadError::NotFound: return "Cabinet not found";
        case ReadError::NotACabinet: return "Not a cabinet";
        case ReadError::UnknownVersion: return "Unknown cabinet version";
        case ReadError::Corrupt: return "Corrupt cabinet";
        case ReadError::NoMemory: return "Memory allocation failed";
        case ReadError::UnknownCompression: return "Unknown compression type";
        case ReadError::CannotDecompress: return "Failure decompressing data";
        case ReadError::CannotWriteTarget: return "Failure writing to target file";
        case ReadError::ReserveMismatch: return "Cabinets in set have different RESERVE sizes";
        case ReadError::WrongCabinet: return "Cabinet returned on fdintNEXT_CABINET is incorrect";
        case ReadError::Aborted: return "User aborted";
    }
    return "Unknown error";
}

void CReadCab::CabToDirectory(const char* folder, const char* cabinet) {
    CReadCab().Unpack(folder, cabinet);
}

void CReadCab::Unpack(const char* folder, const char* cabinet) {
    AddSubstitution(kRoot, CFileUtils::TerminateDir(folder));
    UseManifest(1);
    ReadCab(cabinet);
}
