#pragma once

/// @file The application, as far as the library asks it: the profile in which it keeps its settings.

#include "qvcommon/framework/String.h"

#pragma push_macro("GetProfileString")  // system headers' macros; the class declares each of their expansions
#undef GetProfileString
#pragma push_macro("WriteProfileString")
#undef WriteProfileString

/// A program makes one before it uses the profile; without any, AfxGetApp gives one of the library's own. The profile
/// may be used from any thread and by several processes at once: no write undoes another one.
///
/// Where the profile is:
/// - Windows, after SetRegistryKey: below `HKEY_CURRENT_USER\Software\COMPANY\APPLICATION`, a key a section;
/// - Windows otherwise: the private profile APPLICATION.INI of the Windows folder, which refuses texts of several lines;
/// - Linux: the file COMPANY/APPLICATION.ini, or APPLICATION.ini, in the user's configuration folder ($XDG_CONFIG_HOME,
///   else ~/.config). Every write puts a whole new file in the old one's place; lines that it does not concern stay.
///
/// Sections and entries go by their names without regard to case. A text ends at its first zero byte.
class QVCOMMON_API CWinApp : public CObject {
public:
    /// The application's name; by default that of the program file without its extension. It names a file: path separators
    /// in it become "_".
    explicit CWinApp(const char* name = nullptr);
    ~CWinApp() override;
    CWinApp(const CWinApp&) = delete;
    CWinApp& operator=(const CWinApp&) = delete;

    /// The company under whose name the profile is kept, on Windows in the registry. To be called before the profile is
    /// used.
    void SetRegistryKey(const char* company);

    /// The value, or `otherwise` when there is none or the profile cannot be read.
    CString GetProfileString(const char* section, const char* entry, const char* otherwise = nullptr) const;
    CString GetProfileStringA(const char* section, const char* entry, const char* otherwise = nullptr) const {
        return GetProfileString(section, entry, otherwise);
    }
    CString GetProfileStringW(const char* section, const char* entry, const char* otherwise = nullptr) const {
        return GetProfileString(section, entry, otherwise);
    }
    /// Null as the value deletes the entry, null as the entry the section. @return 0 when the system could not keep that; the profile is as it was then.
    BOOL WriteProfileString(const char* section, const char* entry, const char* value);
    BOOL WriteProfileStringA(const char* section, const char* entry, const char* value) {
        return WriteProfileString(section, entry, value);
    }
    BOOL WriteProfileStringW(const char* section, const char* entry, const char* value) {
        return WriteProfileString(section, entry, value);
    }

    /// The name that the constructor chose.
    CString m_pszAppName;
    /// The company; empty before SetRegistryKey.
    CString m_pszRegistryKey;

private:
    CWinApp* m_before;
};

#pragma pop_macro("WriteProfileString")
#pragma pop_macro("GetProfileString")

/// The application object; never null.
QVCOMMON_API CWinApp* QVCOMMON_CALL AfxGetApp();
