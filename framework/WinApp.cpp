#include "qvcommon/framework/WinApp.h"

#include <atomic>
#include <mutex>

#include "framework/PathText.h"
#include "platform/Process.h"
#include "platform/Profile.h"

namespace {

std::atomic<CWinApp*> g_application{nullptr};
std::mutex g_changing;  // held while the chain of applications changes

// Returns the program's file name without folder and extension.
std::string ProgramName() {
    const std::string path = qv::platform::CurrentProgram();
    const std::string name = path.substr(qv::FindLastOf(path, qv::kSeparators) + 1);
    const std::size_t point = name.rfind('.');
    return point == 0 ? name : name.substr(0, point);
}

CString AsFileName(CString name) {
    name.Replace('/', '_');
    name.Replace('\\', '_');
    return name == "." || name == ".." ? CString("_") : name;
}

}  // namespace

CWinApp::CWinApp(const char* name) : m_pszAppName(AsFileName(name ? name : ProgramName().c_str())) {
    const std::lock_guard lock(g_changing);
    m_before = g_application.exchange(this);
}

CWinApp::~CWinApp() {
    const std::lock_guard lock(g_changing);
    if (g_application == this) {
        g_application = m_before;
        return;
    }
    for (CWinApp* later = g_application; later; later = later->m_before)
        if (later->m_before == this) later->m_before = m_before;
}

void CWinApp::SetRegistryKey(const char* company) {
    m_pszRegistryKey = AsFileName(company);
}

CString CWinApp::GetProfileString(const char* section, const char* entry, const char* otherwise) const {
    const auto value = qv::platform::ReadProfile({m_pszRegistryKey.AsStd(), m_pszAppName.AsStd()}, section, entry);
    return value ? CString(*value) : CString(otherwise);
}

BOOL CWinApp::WriteProfileString(const char* section, const char* entry, const char* value) {
    return qv::platform::WriteProfile({m_pszRegistryKey.AsStd(), m_pszAppName.AsStd()}, section, entry, value);
}

CWinApp* AfxGetApp() {
    if (CWinApp* const application = g_application) return application;
    static CWinApp* const own = new CWinApp;  // never destroyed: static objects may save settings at exit
    return own;
}
