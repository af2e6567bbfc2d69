#pragma once

/// @file The application's name, where its settings are stored, and its folders. All of it is derived from AfxGetApp()
/// (framework/WinApp.h): its name, and the company set by SetRegistryKey.

#include "qvcommon/RegHelper.h"

/// Sets the company under which the application of AfxGetApp() stores settings and files. Must be called once at
/// startup, before any other function here and before the profile is used. Separators in the name become "_".
QVCOMMON_API void QVCOMMON_CALL SetRegistryKey(const char* company);

/// The application's display name, for titles and messages. Defaults to the name of AfxGetApp(); setting an empty name
/// restores the default. Thread-safe.
QVCOMMON_API void QVCOMMON_CALL SetFriendlyName(const char* name);
QVCOMMON_API CString QVCOMMON_CALL GetFriendlyName();

/// A section of the application's settings: the key `Software\COMPANY\APPLICATION\SECTION`, or
/// `Software\APPLICATION\SECTION` without a company. With a company, its strings are shared with
/// CWinApp::GetProfileString and ProfileStore on every system.
class QVCOMMON_API CCommonAppRegistry : public CRegHelper {
public:
    /// @param root  localMachine: the settings that an administrator has made for all users.
    explicit CCommonAppRegistry(std::string_view section, Root root = currentUser);
};

// Folders, in the library's form, with a trailing "\" (CFileUtils::UnterminateDir removes it).

/// Returns the folder of the program file; empty if the system cannot determine it.
QVCOMMON_API CString QVCOMMON_CALL GetApplicationDirectory();

// The application's own folders, named after company and application. Each is created if missing, on Linux with access
// for the user only. @throws CFileException* naming the folder if it cannot be created.

/// Returns the folder for the user's files: on Linux in $XDG_DATA_HOME, else ~/.local/share; on Windows in the roaming
/// application data.
QVCOMMON_API CString QVCOMMON_CALL GetDataDirectory();
/// Returns the folder for settings files: on Linux in $XDG_CONFIG_HOME, else ~/.config; on Windows the same as
/// GetDataDirectory.
QVCOMMON_API CString QVCOMMON_CALL GetSettingsDirectory();
/// Returns the folder for data that can be regenerated: on Linux in $XDG_CACHE_HOME, else ~/.cache; on Windows in the
/// local application data.
QVCOMMON_API CString QVCOMMON_CALL GetCacheDirectory();
/// Returns the user's folder for temporary files, shared by all programs: on Linux $TMPDIR, else /tmp. It is not
/// created.
QVCOMMON_API CString QVCOMMON_CALL GetTemporaryDirectory();
