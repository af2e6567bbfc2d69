#pragma once

/// @file Values below registry keys.

#include "qvcommon/framework/Collections.h"

/// One key and its values.
///
/// On Windows the system's registry, with its own types: texts, numbers of 32 bits, bytes. Of other programs numbers of 64
/// bits, lists and texts with variables (which stay as they are) are read too. On Linux a key
/// `Software\COMPANY\APPLICATION\REST` is the section REST of the file COMPANY/APPLICATION.ini, and any other key a section
/// of QvCommon/registry.ini, in the user's configuration folder ($XDG_CONFIG_HOME, else ~/.config), or for the machine in
/// the first of $XDG_CONFIG_DIRS, else /etc/xdg; so the profile of an application (framework/WinApp.h) is the same values,
/// as it is on Windows. docs/formats/profile.md describes the files.
///
/// Every value has a text form: a number its decimal digits, bytes two hexadecimal digits each, a list a record of
/// comma-separated values. A value is read as any type that its text form is one of, whatever it was written as, on both
/// systems.
///
/// Get members never raise: they return 0 and leave `value` alone where there is no such value, it is not of the type, or
/// it cannot be read. Names go without regard to case; on Linux company and application are names of files and case
/// matters. An empty name is the key's default value. A name or text with a zero byte raises CInvalidArgException*, and one
/// that the system cannot keep without change CFileException* with the cause invalidFile.
/// One object, one thread; any number of objects.
class QVCOMMON_API CRegHelper {
public:
    /// Whose settings: the user's, or those of the machine.
    enum Root { currentUser, localMachine };

    /// Nothing is read or made yet. Names in the path are separated by "\".
    explicit CRegHelper(std::string_view key, Root root = currentUser);
    /// The path that the constructor got.
    const CString& GetKey() const { return m_key; }

    /// The text form of any value.
    BOOL GetString(std::string_view name, CString& value) const;
    /// Decimal digits, 0 to 4294967295.
    BOOL GetInteger(std::string_view name, DWORD& value) const;
    /// An even number of hexadecimal digits, in any case.
    BOOL GetBytes(std::string_view name, CString& value) const;
    /// Any text is a list; the empty one an empty list.
    BOOL GetList(std::string_view name, CStringArray& value) const;

    // Changing; each makes the key when it is missing. @throws CFileException* naming the key, which is what it was:
    // accessDenied where the user may not change it, such as most keys of the machine.

    /// Written as a text (REG_SZ).
    void SetString(std::string_view name, std::string_view value);
    /// Written as a number (REG_DWORD).
    void SetInteger(std::string_view name, DWORD value);
    /// Written as bytes (REG_BINARY).
    void SetBytes(std::string_view name, std::string_view value);
    /// Written as a text.
    void SetList(std::string_view name, const CStringArray& value);
    /// What is not there is deleted already.
    void DeleteValue(std::string_view name);
    /// The key with its values and all keys below it. @throws CInvalidArgException* for the key "", the root itself.
    void DeleteKey();

    /// Each: The names of the values, and of the keys directly below this one. Empty where the key is missing or cannot
    /// be read. On Linux only keys within one application's settings, or within registry.ini, are found.
    CStringArray GetValueNames() const;
    CStringArray GetKeyNames() const;

private:
    CString m_key;
    Root m_root;
};
