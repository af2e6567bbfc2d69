#pragma once

/// @file The application, as far as the library uses it: the profile that stores its settings.

#include "qvcommon/framework/String.h"

#pragma push_macro("GetProfileString")  // system headers' macros; the class declares each of their expansions
#undef GetProfileString
#pragma push_macro("WriteProfileString")
#undef WriteProfileString

/// A program creates one before it uses the profile; otherwise AfxGetApp returns one owned by the library. The profile
/// is safe for use by several threads and processes: no write undoes another one.
///
/// The profile is
/// - on Windows, after SetRegistryKey: below `HKEY_CURRENT_USER\Software\COMPANY\APPLICATION`, one key per section;
/// - on Windows otherwise: the private profile APPLICATION.INI of the Windows folder, which rejects multi-line strings;
/// - on Linux: the file COMPANY/APPLICATION.ini, or APPLICATION.ini, in the user's configuration folder
///   ($XDG_CONFIG_HOME, else ~/.config). Every write replaces the whole file atomically and keeps unrelated lines.
///
/// Section and entry names are case-insensitive. A string ends at its first zero byte.
class QVCOMMON_API CWinApp : public CObject {
public:
    /// Sets the application's name; by default that of the program file without its extension. It is used as a file
    /// name: path separators in it become "_".
    explicit CWinApp(const char* name = nullptr);
    ~CWinApp() override;
    CWinApp(const CWinApp&) = delete;
    CWinApp& operator=(const CWinApp&) = delete;

    /// Sets the company under which the profile is stored, on Windows in the registry. Must be called before the
    /// profile is used.
    void SetRegistryKey(const char* company);

    /// Returns the value, or `otherwise` if it does not exist or the profile cannot be read.
    CString GetProfileString(const char* section, const char* entry, const char* otherwise = nullptr) const;
    CString GetProfileStringA(const char* section, const char* entry, const char* otherwise = nullptr) const {
        return GetProfileString(section, entry, otherwise);
    }
    CString GetProfileStringW(const char* section, const char* entry, const char* otherwise = nullptr) const {
        return GetProfileString(section, entry, otherwise);
    }
    /// Sets a value. A null value deletes the entry, a null entry the section. @return 0 if the change could not be
    /// stored; the profile is then unchanged.
    BOOL WriteProfileString(const char* section, const char* entry, const char* value);
    BOOL WriteProfileStringA(const char* section, const char* entry, const char* value) {
        return WriteProfileString(section, entry, value);
    }
    BOOL WriteProfileStringW(const char* section, const char* entry, const char* value) {
        return WriteProfileString(section, entry, value);
    }

    /// The name set by the constructor.
    CString m_pszAppName;
    /// The company; empty before SetRegistryKey.
    CString m_pszRegistryKey;

private:
    CWinApp* m_before;
};

#pragma pop_macro("WriteProfileString")
#pragma pop_macro("GetProfileString")

/// Returns the application object; never null.
QVCOMMON_API CWinApp* QVCOMMON_CALL AfxGetApp();
