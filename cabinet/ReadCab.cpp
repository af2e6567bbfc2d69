#include "cabinet/Manifest.h"
#include "cabinet/MemberName.h"
#include "cabinet/ReadCabContext.h"
#include "qvcommon/CabinetException.h"
#include "qvcommon/FileUtils.h"

using namespace qv::cabinet;

namespace {

/// Returns the name of a compression that is not supported.
CString MethodName(unsigned method) {
    if (method == kQuantum) return "Quantum";
    CString name;
    if (method != 0) name.Format("%u", method);
    return name;
}

/// Opens cabinets only for their lists.
class SetFiles : public OnDisk<IReaderCallbacks> {
public:
    std::intptr_t Notify(QvCabinetNotification::Type, QvCabinetNotification&) override { return 0; }
    CString FindName(const CString& folder, const CString& name) override { return FindNameOnDisk(folder, name); }
};

}  // namespace

CReadCab::CReadCab() = default;

CReadCab::~CReadCab() = default;

void CReadCab::Fail(int error) {
    QvCabinetFailure failure;
    if (m_context) {
        const FailurePlace& where = m_context->reader.Where();
        failure.archive = where.cabinet;
        const bool isPassedOver = error == NumberOf(ReadError::UnknownCompression);
        failure.member = isPassedOver || m_context->subject.IsEmpty() ? where.member : m_context->subject;
        failure.method = MethodName(where.method);
        failure.otherMembers = where.others;
        failure.systemError = m_context->SystemError();
    }
    m_error = {error, static_cast<int>(failure.systemError), 1};
    CloseHfdi();
    throw new CCabinetException(error, GetFdiErrorString(error), failure);
}

void CReadCab::ReadCab(const char* path) {
    const CString cabinet = WithBackslashes(path);
    m_manifest.RemoveAll();
    m_manifestLoaded = 0;
    m_nextManifest = 0;
    if (!m_context) OpenHfdi();
    if (!m_context) Fail(NumberOf(ReadError::NoMemory));
    bool copied = false;
    const Coverage coverage = !m_useManifest ? Coverage::Any : m_dryRun ? Coverage::WithoutGaps : Coverage::All;
    try {
        copied =
            m_context->reader.Copy(CFileUtils::GetFilenameFromPath(cabinet), CFileUtils::GetDirectoryFromPath(cabinet),
                                   {m_limits.members, m_limits.totalSize, m_limits.expansion, coverage});
    } catch (...) {
        CloseHfdi();
        throw;
    }
    if (!copied) Fail(m_error.error);
    CloseHfdi();
    TellOfMissingMembers();
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

void CReadCab::SetLeftOut(ILeftOut* observer) {
    m_leftOut = observer;
}

void CReadCab::SetRestoreTimes(int restore) {
    m_restoreTimes = restore;
}

void CReadCab::SetDryRun(int dryRun) {
    m_dryRun = dryRun;
}

CString CReadCab::GetTargetPath() const {
    return m_context ? m_context->subject : CString();
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

void CReadCab::NotifyWritten(DWORD) {}

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
    for (int i = m_sources.GetSize(); i-- > 0;) {
        if (m_sources[i] != kRoot) continue;
        m_sources.RemoveAt(i);
        m_targets.RemoveAt(i);
    }
    AddSubstitution(kRoot, CFileUtils::TerminateDir(folder));
    UseManifest(1);
    ReadCab(FindFirstCabinet(cabinet));
    // If the archive is empty, no member has created the folder.
    if (m_dryRun || CString(folder).IsEmpty() || QvCreateDirectory(folder)) return;
    const int error = NumberOf(ReadError::CannotWriteTarget);
    throw new CCabinetException(error, GetFdiErrorString(error), {.archive = cabinet, .member = folder});
}

CString CReadCab::FindFirstCabinet(const char* cabinet) {
    const CString path = WithBackslashes(cabinet), folder = CFileUtils::GetDirectoryFromPath(path);
    CString name = CFileUtils::GetFilenameFromPath(path);
    SetFiles files;
    QvCabinetError error;
    CabinetReader reader(files, error);
    if (reader.FindFirst(name, folder)) return folder + name;
    throw new CCabinetException(error.error, CReadCab().GetFdiErrorString(error.error),
                                {.archive = reader.Where().cabinet, .systemError = files.SystemError()});
}

int CReadCab::HasManifest(const char* cabinet) {
    SetFiles files;
    QvCabinetError error;
    MemberEntry member;
    return CabinetReader(files, error).ReadFirstMember(WithBackslashes(cabinet), member) && IsManifestName(member.name);
}
