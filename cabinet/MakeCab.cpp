#include <algorithm>

#include "cabinet/CabinetWriter.h"
#include "cabinet/DiskFiles.h"
#include "cabinet/Manifest.h"
#include "cabinet/MemberName.h"
#include "cabinet/PackedTree.h"
#include "files/PathParts.h"
#include "platform/DosTime.h"
#include "platform/FolderFiles.h"
#include "platform/Path.h"
#include "qvcommon/Cabinet.h"
#include "qvcommon/CabinetException.h"
#include "qvcommon/FileUtils.h"
#include "qvcommon/framework/StdioFile.h"

using namespace qv::cabinet;
using qv::platform::FileInfo;

namespace {

constexpr std::uint16_t kSetId = 5193;

}  // namespace

class CMakeCab::Context : public OnDisk<IMakerCallbacks> {
public:
    explicit Context(CMakeCab& owner) : m_owner(owner) {}

    Handle CreateStore() override { return m_files.CreateTemporary(m_owner.m_destPath); }
    Handle CreateCabinet(const CString& path) override { return m_files.CreateReplacement(path); }
    bool Commit(Handle file) override { return m_files.Commit(file); }
    int FilePlaced(const QvCabinetDescription& cabinet, const CString& name, std::uint32_t size,
                   BOOL continued) override {
        return m_owner.FilePlaced(cabinet, name, size, continued);
    }
    long Status(StatusType type, std::uint32_t first, std::uint32_t second) override {
        return m_owner.Status(static_cast<UINT>(type), first, second);
    }
    int GetNextCabinet(QvCabinetDescription& cabinet, std::uint32_t previousSize) override {
        return m_owner.GetNextCab(cabinet, previousSize);
    }

    Handle GetOpenInfo(const CString& path, std::uint16_t& date, std::uint16_t& time,
                       std::uint16_t& attributes) override {
        const Handle handle = Open(path, OpenMode::Read);
        FileInfo info;
        if (handle == kNoHandle || !qv::platform::StatusOf(m_files.SystemHandle(handle), path, info).ok()) {
            if (handle != kNoHandle) Close(handle);
            return kNoHandle;
        }
        const qv::platform::DosTime stamp = qv::platform::ToDosTime(info.modified);
        date = stamp.date;
        time = stamp.time;
        attributes = static_cast<std::uint16_t>(info.attributes & kFileAttributes);
        if (!qv::platform::KeepsArchiveBit()) attributes |= qv::platform::kArchive;
        if (NeedsUtf8(CFileUtils::GetFilenameFromPath(path))) attributes |= kNameIsUtf8;
        return handle;
    }

    CString source;                         // the file being added
    std::unique_ptr<CabinetWriter> writer;  // destroyed before what it calls

private:
    CMakeCab& m_owner;
};

CMakeCab::CMakeCab() = default;

CMakeCab::~CMakeCab() = default;

void CMakeCab::SetName(const char* name) {
    m_name = name;
}

void CMakeCab::SetDestPath(const char* path) {
    m_destPath = CFileUtils::TerminateDir(path);
}

CString CMakeCab::GetName() const {
    return m_name;
}

CString CMakeCab::GetDestPath() const {
    return m_destPath;
}

void CMakeCab::CreateNewCab() {
    m_context.reset();
    QvCabinetDescription cabinet;
    cabinet.maximumSize = GetMediaSize();
    cabinet.folderThreshold = GetFolderThreshold();
    cabinet.setId = kSetId;
    cabinet.diskName = m_name;
    cabinet.cabinetPath = m_destPath;
    if (!GetNextCab(cabinet, 0)) {
        m_error = {NumberOf(WriteError::Aborted), 0, 1};
        Check(false);
    }
    m_context = std::make_unique<Context>(*this);
    m_context->writer = CabinetWriter::Create(*m_context, cabinet, m_error);
    Check(m_context->writer != nullptr);
}

/// Runs an operation of the engine. A failure ends the archive.
template <class Action>
void CMakeCab::Run(Action action) {
    bool succeeded = false;
    if (!m_context) m_error = {NumberOf(WriteError::CabinetFile), 0, 1};
    try {
        succeeded = m_context && action(*m_context->writer);
    } catch (...) {
        m_context.reset();
        throw;
    }
    Check(succeeded);
}

void CMakeCab::Check(bool succeeded) {
    if (succeeded) return;
    QvCabinetFailure failure = {.archive = m_destPath + m_name + ".cab"};
    if (m_context) {
        failure.member = m_context->source;
        failure.systemError = m_context->SystemError();
    }
    m_error.type = static_cast<int>(failure.systemError);
    m_context.reset();
    throw new CCabinetException(m_error.error, GetFciErrorString(m_error.error), failure);
}

void CMakeCab::AddFile(const char* path) {
    const CString source = WithBackslashes(path);
    const CString name = CFileUtils::GetFilenameFromPath(source);
    if (m_context) m_context->source = source;
    Run([&](CabinetWriter& writer) { return writer.AddFile(source, ToMemberName(name), false, kMszip); });
    m_context->source.Empty();
}

void CMakeCab::AddFolder() {
    Run([](CabinetWriter& writer) { return writer.FlushFolder(); });
}

void CMakeCab::Commit() {
    Run([](CabinetWriter& writer) { return writer.FlushCabinet(false); });
    m_context.reset();
}

void CMakeCab::AddManifest(const CStringArray& entries) {
    ManifestFile manifest;
    CTempFile& list = manifest.file;
    RemoveStaleManifests(list.GetDirectory());
    list.SetPrefix(kManifestPrefix);
    list.SetExtension("xml");
    list.Create();
    CStdioFile file(list.GetFilename(), CFile::modeCreate | CFile::modeWrite | CFile::typeText);
    file.WriteString(ManifestText(entries));
    file.Close();
    AddFile(list.GetFilename());
}

int CMakeCab::FilePlaced(const QvCabinetDescription&, const char*, DWORD, BOOL) {
    return 0;
}

long CMakeCab::Status(UINT, DWORD, DWORD) {
    return 0;
}

BOOL CMakeCab::GetNextCab(QvCabinetDescription& cabinet, DWORD) {
    if (cabinet.cabinetNumber == 0)
        cabinet.cabinetName.Format("%s.cab", m_name);
    else
        cabinet.cabinetName.Format("%s%d.cab", m_name, cabinet.cabinetNumber);
    return 1;
}

DWORD CMakeCab::GetMediaSize() const {
    return 0x7FFFFFFF;
}

DWORD CMakeCab::GetFolderThreshold() const {
    return 0x7FFFFFFF;
}

CString CMakeCab::GetFciErrorString(int error) const {
    switch (static_cast<WriteError>(error)) {
        case WriteError::None: return "No error";
        case WriteError::OpenFile: return "Failure opening file to be stored in cabinet";
        case WriteError::ReadFile: return "Failure reading file to be stored in cabinet";
        case WriteError::NoMemory: return "Insufficient memory in FCI";
        case WriteError::TempFile: return "Could not create a temporary file";
        case WriteError::UnknownCompression: return "Unknown compression type";
        case WriteError::CabinetFile: return "Could not create cabinet file";
        case WriteError::Aborted: return "Client requested abort";
        case WriteError::CannotCompress: return "Failure compressing data";
    }
    return "Unknown error";
}

void CMakeCab::DirectoryToCab(const char* folder, const char* cabinet, int recurse) {
    CMakeCab().Pack(folder, cabinet, recurse);
}

void CMakeCab::SetLeftOut(ILeftOut* observer) {
    m_leftOut = observer;
}

void CMakeCab::Pack(const char* folder, const char* cabinet, int recurse) {
    const CString target = cabinet, name = qv::TitleOf(target);
    const bool isTooLong = qv::platform::NativePath(target).size() > qv::platform::LongestPath();
    if (isTooLong || name.IsEmpty()) AfxThrowFileException(CFileException::badPath, -1, cabinet);
    if (!CFileUtils::IsDirectory(folder)) AfxThrowFileException(CFileException::badPath, -1, folder);
    const PackedTree tree = ListTree(folder, recurse, m_leftOut);
    SetDestPath(qv::FolderOf(target));
    SetName(name);
    CreateNewCab();
    AddManifest(tree.entries);
    for (const CString& file : tree.files) AddFile(file);
    Commit();
}
