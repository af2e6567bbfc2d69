#include "qvcommon/DllLoader.h"

#include <set>
#include <utility>

#include "platform/Ascii.h"
#include "platform/FileStatus.h"
#include "platform/Library.h"
#include "platform/Path.h"
#include "qvcommon/Exceptions.h"
#include "qvcommon/FileFinder.h"
#include "qvcommon/FileUtils.h"

namespace {

[[noreturn]] void Refuse(const CString& path, const CString& reason) {
    ThrowQvException(path + ": " + reason, 48, 0, 0);
}

bool IsSeparator(char c) {
    return c == '\\' || c == '/';
}

bool IsAbsolute(std::string_view path) {
    if (!qv::platform::HasDriveLetters()) return !path.empty() && IsSeparator(path[0]);
    if (path.size() < 3) return false;
    return (path[1] == ':' && IsSeparator(path[2])) || (IsSeparator(path[0]) && IsSeparator(path[1]));
}

/// Whether it can be the name of a plug-in.
bool IsName(const CString& name) {
    return !name.IsEmpty() && name.FindOneOf("\\/:") < 0;
}

/// Returns the name by which a file is loaded; empty if it is no library, or has no such name.
CString LibraryNameOf(const CString& file) {
    const CString pattern(qv::platform::LibraryFileNames("").front());  // the extension
    const CString name = file.Left(file.GetLength() - pattern.GetLength()), extension = file.Mid(name.GetLength());
    const bool matches = qv::platform::HasDriveLetters()
                             ? qv::ascii::EqualsIgnoreCase(extension.AsStd(), pattern.AsStd())
                             : extension == pattern;
    return matches && IsName(name) ? name : CString();
}

}  // namespace

CDllInstance::CDllInstance(CDllInstance&& other) noexcept
    : m_library(std::exchange(other.m_library, nullptr)), m_path(std::move(other.m_path)) {}

CDllInstance& CDllInstance::operator=(CDllInstance&& other) noexcept {
    std::swap(m_library, other.m_library);
    std::swap(m_path, other.m_path);
    return *this;
}

CDllInstance::~CDllInstance() {
    Unload();
}

void CDllInstance::Load(const char* name) {
    const CString path = name;
    Unload();
    if (!IsAbsolute(path)) Refuse(path, "The path is not absolute.");
    // Opening a pipe, the system's loader would wait for its writer.
    qv::platform::FileInfo info;
    const bool isThere = qv::platform::StatusOf(path, info).ok();
    if (isThere && !info.isRegular) Refuse(path, "Not a library.");
    std::string problem;
    m_library = qv::platform::OpenLibrary(path, problem);
    if (!m_library) Refuse(path, CString(problem));
    m_path = path;
}

void CDllInstance::Unload() {
    if (m_library) qv::platform::CloseLibrary(std::exchange(m_library, nullptr));
}

void* CDllInstance::Address(const char* name) const {
    return m_library ? qv::platform::FindInLibrary(m_library, name) : nullptr;
}

void CDllInstance::RaiseMissing(const char* name) const {
    Refuse(m_path, CString("The function ") + name + " is missing.");
}

void CDllInstance::CheckVersion(const CDllFunction<int()>& function, int lowest, int highest) const {
    const int version = Get(function)();
    if (version >= lowest && version <= highest) return;
    CString reason;
    reason.Format("The version %d is not supported, only %d to %d.", version, lowest, highest);
    Refuse(m_path, reason);
}

DllLoader::~DllLoader() {
    while (!m_loaded.empty()) m_loaded.pop_back();
}

void DllLoader::AddFolder(const char* folder) {
    if (!IsAbsolute(CString(folder))) AfxThrowInvalidArgException();
    m_folders.Add(CFileUtils::TerminateDir(folder));
}

void DllLoader::SetVersion(const CDllFunction<int()>& function, int lowest, int highest) {
    m_versionFunction = function.name;
    m_lowest = lowest;
    m_highest = highest;
}

CDllInstance& DllLoader::Load(const char* name) {
    const CString wanted = name;
    if (!IsName(wanted)) AfxThrowInvalidArgException();
    for (Loaded& loaded : m_loaded)
        if (loaded.name == wanted) return loaded.library;
    CDllInstance library(PathOf(wanted));
    if (!m_versionFunction.IsEmpty())
        library.CheckVersion(CDllFunction<int()>{m_versionFunction.c_str()}, m_lowest, m_highest);
    m_loaded.push_back({wanted, std::move(library)});
    return m_loaded.back().library;
}

CString DllLoader::PathOf(const CString& name) const {
    for (const CString& folder : m_folders)
        for (const std::string& file : qv::platform::LibraryFileNames(name))
            if (CFileUtils::IsExist(folder + file)) return folder + file;
    Refuse(name, "No folder of plug-ins has a library of this name.");
}

CStringArray DllLoader::GetNames() const {
    std::set<CString> names;
    for (const CString& folder : m_folders) {
        FileFinder finder;
        finder.SetSearchPath(folder);
        finder.SetSearchMask("*.*");
        finder.Discover();
        for (const CString& file : finder.GetFileOffsets())
            if (const CString name = LibraryNameOf(file); !name.IsEmpty()) names.insert(name);
    }
    return {names.begin(), names.end()};
}
