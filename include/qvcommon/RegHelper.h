#pragma once

/// @file Values of registry keys.

#include "qvcommon/framework/Collections.h"

/// A key and its values.
///
/// On Windows the system's registry, with its own types: strings, numbers of 32 bits, bytes. Numbers of 64 bits, lists
/// and strings with variables (not expanded) written by other programs can be read too. On Linux a key
/// `Software\COMPANY\APPLICATION\REST` is the section REST of the file COMPANY/APPLICATION.ini, and any other key a
/// section of QvCommon/registry.ini, in the user's configuration folder ($XDG_CONFIG_HOME, else ~/.config), or for the
/// machine in the first of $XDG_CONFIG_DIRS, else /etc/xdg; so the profile of an application (framework/WinApp.h)
/// contains the same values, as on Windows. docs/formats/profile.md describes the files.
///
/// Every value has a string form: a number its decimal digits, bytes two hexadecimal digits each, a list a record of
/// comma-separated values. A value can be read as any type for which its string form is valid, regardless of its stored
/// type, on both systems.
///
/// Getters never raise: they return 0 and leave `value` unchanged if the value is missing, is not of the type, or
/// cannot be read. Names are case-insensitive; on Linux company and application are file names, where case matters. An
/// empty name is the key's default value. A name or string with a zero byte raises CInvalidArgException*, and one that
/// the system cannot store unchanged CFileException* with the cause invalidFile.
/// Not thread-safe, but any number of objects may be used.
class QVCOMMON_API CRegHelper {
public:
    /// The settings of the user, or those of the machine.
    enum Root { currentUser, localMachine };

    /// Refers to a key, without reading or creating it. Names in the path are separated by "\".
    explicit CRegHelper(std::string_view key, Root root = currentUser);
    /// Returns the constructor's path.
    const CString& GetKey() const { return m_key; }

    /// Reads the string form of any value.
    BOOL GetString(std::string_view name, CString& value) const;
    /// Reads decimal digits, 0 to 4294967295.
    BOOL GetInteger(std::string_view name, DWORD& value) const;
    /// Reads an even number of hexadecimal digits, in any case.
    BOOL GetBytes(std::string_view name, CString& value) const;
    /// Reads a list; every string is one, the empty string an empty list.
    BOOL GetList(std::string_view name, CStringArray& value) const;

    // Setters create the key if missing. @throws CFileException* naming the key, which is unchanged: accessDenied if
    // the user may not change it, such as most keys of the machine.

    /// Writes a string (REG_SZ).
    void SetString(std::string_view name, std::string_view value);
    /// Writes a number (REG_DWORD).
    void SetInteger(std::string_view name, DWORD value);
    /// Writes bytes (REG_BINARY).
    void SetBytes(std::string_view name, std::string_view value);
    /// Writes a string.
    void SetList(std::string_view name, const CStringArray& value);
    /// Deletes a value; no-op if it does not exist.
    void DeleteValue(std::string_view name);
    /// Deletes the key with its values and all its subkeys. @throws CInvalidArgException* for the key "", the root
    /// itself.
    void DeleteKey();

    /// Each: Returns the names of the values, and of the direct subkeys. Empty if the key is missing or cannot be read.
    /// On Linux only keys within one application's settings, or within registry.ini, are found.
    CStringArray GetValueNames() const;
    CStringArray GetKeyNames() const;

private:
    CString m_key;
    Root m_root;
};
