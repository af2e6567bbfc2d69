#include "qvcommon/AppRegistry.h"

#include <mutex>

#include "framework/FileErrors.h"
#include "platform/FileStatus.h"
#include "platform/Path.h"
#include "platform/Process.h"
#include "platform/UserFolders.h"
#include "qvcommon/framework/WinApp.h"

namespace {

struct FriendlyName {
    std::mutex mutex;
    CString name;
};

FriendlyName& NameForPeople() {
    static FriendlyName friendly;
    return friendly;
}

/// Returns COMPANY\APPLICATION, or APPLICATION.
CString OwnPath() {
    const CWinApp& application = *AfxGetApp();
    const CString& company = application.m_pszRegistryKey;
    return company.IsEmpty() ? application.m_pszAppName : company + '\\' + application.m_pszAppName;
}

CString OwnFolder(qv::platform::UserFolderKind kind) {
    const std::string all = qv::platform::UserFolder(kind);
    if (all.empty()) qv::ThrowIfFailed({qv::platform::FileCause::BadPath, 0}, OwnPath());
    const CString folder = all + '\\' + OwnPath();
    qv::ThrowIfFailed(qv::platform::MakeUserFolder(folder), folder);
    qv::platform::FileInfo info;
    qv::ThrowIfFailed(StatusOf(folder, info), folder);
    if (!(info.attributes & qv::platform::kDirectory)) qv::ThrowIfFailed({qv::platform::FileCause::BadPath, 0}, folder);
    return folder + '\\';
}

}  // namespace

void QVCOMMON_CALL SetRegistryKey(const char* company) {
    AfxGetApp()->SetRegistryKey(company);
}

void QVCOMMON_CALL SetFriendlyName(const char* name) {
    FriendlyName& friendly = NameForPeople();
    const std::lock_guard lock(friendly.mutex);
    friendly.name = name;
}

CString QVCOMMON_CALL GetFriendlyName() {
    FriendlyName& friendly = NameForPeople();
    const std::lock_guard lock(friendly.mutex);
    return friendly.name.IsEmpty() ? AfxGetApp()->m_pszAppName : friendly.name;
}

CCommonAppRegistry::CCommonAppRegistry(std::string_view section, Root root)
    : CRegHelper("Software\\" + OwnPath() + '\\' + section, root) {}

CString QVCOMMON_CALL GetApplicationDirectory() {
    const CString program = qv::platform::LibraryPath(qv::platform::CurrentProgram());
    return program.Left(program.ReverseFind('\\') + 1);
}

CString QVCOMMON_CALL GetDataDirectory() {
    return OwnFolder(qv::platform::UserFolderKind::Data);
}

CString QVCOMMON_CALL GetSettingsDirectory() {
    return OwnFolder(qv::platform::UserFolderKind::Settings);
}

CString QVCOMMON_CALL GetCacheDirectory() {
    return OwnFolder(qv::platform::UserFolderKind::Cache);
}

CString QVCOMMON_CALL GetTemporaryDirectory() {
    return CString(qv::platform::TempDirectory());
}
