#pragma once

/// @file What an application calls itself, where its settings are, and which folders are its own. All of it goes by
/// AfxGetApp() (framework/WinApp.h): its name, and the company that SetRegistryKey names.

#include "qvcommon/RegHelper.h"

/// The company under whose name the application of AfxGetApp() keeps settings and files. To be called once at the start,
/// before any other function here and before the profile is used. Separators in it become "_".
QVCOMMON_API void QVCOMMON_CALL SetRegistryKey(const char* company);

/// The application's name for people, in titles and messages; until it is set, or after an empty one, that of AfxGetApp().
/// Any thread.
QVCOMMON_API void QVCOMMON_CALL SetFriendlyName(const char* name);
QVCOMMON_API CString QVCOMMON_CALL GetFriendlyName();

/// A section of the application's settings: the key `Software\COMPANY\APPLICATION\SECTION`, or `Software\APPLICATION\SECTION`
/// without a company. With a company its texts are those of CWinApp::GetProfileString and ProfileStore too, on every
/// system.
class QVCOMMON_API CCommonAppRegistry : public CRegHelper {
public:
    /// With localMachine the settings that an administrator has made for all users.
    explicit CCommonAppRegistry(std::string_view section, Root root = currentUser);
};

// Folders, in the library's form, with a final "\" (CFileUtils::UnterminateDir takes it off).

/// Where the program file is; empty where the system cannot tell.
QVCOMMON_API CString QVCOMMON_CALL GetApplicationDirectory();

// The application's own folders, named by company and application. Each is made when it is missing, on Linux for the user
// alone. @throws CFileException* naming the folder when it cannot be made.

/// For files that belong to the user: on Linux in $XDG_DATA_HOME, else ~/.local/share; on Windows in the roaming
/// application data.
QVCOMMON_API CString QVCOMMON_CALL GetDataDirectory();
/// For files of settings: on Linux in $XDG_CONFIG_HOME, else ~/.config; on Windows the same as GetDataDirectory.
QVCOMMON_API CString QVCOMMON_CALL GetSettingsDirectory();
/// For what can be made again: on Linux in $XDG_CACHE_HOME, else ~/.cache; on Windows in the local application data.
QVCOMMON_API CString QVCOMMON_CALL GetCacheDirectory();
/// The user's folder for temporary files, shared by all programs: on Linux $TMPDIR, else /tmp. It is not made.
QVCOMMON_API CString QVCOMMON_CALL GetTemporaryDirectory();
