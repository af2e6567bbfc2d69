#pragma once

/// @file Typed settings, by section and entry, in an INI file or in the application's profile.

#include <functional>
#include <memory>

#include "qvcommon/framework/Collections.h"
#include "qvcommon/framework/DateTime.h"

namespace qv {

class SettingSource;

}  // namespace qv

/// A file of settings, or the profile of the application (framework/WinApp.h), which navigation bars use too.
///
/// Sections and entries are found by name, ignoring the case of A to Z. Every value is a string; typed values have
/// string forms that are the same in every locale and on every system. docs/formats/profile.md describes the file:
/// comments, the order of lines and other manual edits are preserved. Any file can be read: lines that are neither
/// headers, entries nor comments are ignored and preserved.
///
/// Every member reads the current file, so changes by others are visible at once. Every change replaces the whole file
/// while holding its lock: readers see the old version or the new one, and no writer, in this or another process,
/// undoes another one's changes. A member is O(n) in the size of the file; use Update to set many values. Files larger
/// than 16 MB are rejected.
///
/// If the application's profile is the registry or a private profile of Windows, these systems' rules apply instead: a
/// string with a zero byte or that is not well-formed in the code page is rejected, and Update writes value by value.
///
/// Getters never raise: they return `otherwise` if the entry is missing, its string is no value of the type, or the
/// file cannot be read. All others raise CFileException* naming the file if the change cannot be stored, leaving the
/// file unchanged. Not thread-safe, but any number of objects may be used, also on the same file.
class QVCOMMON_API ProfileStore {
public:
    /// Uses the profile of AfxGetApp() under its current name. On Linux its folder is created when the first value is
    /// set.
    ProfileStore();
    /// Uses a file, which need not exist; its folder must, when a value is set.
    explicit ProfileStore(const char* file);
    ~ProfileStore();
    ProfileStore(const ProfileStore&) = delete;
    ProfileStore& operator=(const ProfileStore&) = delete;

    /// Returns the file's path; empty for a profile that is not stored in a file of this format.
    CString GetFile() const;

    /// Returns the section names in file order, without duplicates. The first of several sections with the same name is
    /// used.
    CStringArray GetSections() const;
    /// Returns the names of a section's entries in file order, without duplicates; empty if the section is missing.
    CStringArray GetEntries(std::string_view section) const;
    /// Returns whether the entry exists, regardless of its value.
    bool HasEntry(std::string_view section, std::string_view entry) const;

    /// Returns the string as stored.
    CString GetString(std::string_view section, std::string_view entry, std::string_view otherwise = {}) const;
    /// Parses a decimal number with an optional sign; a number beyond 32 bits is invalid.
    int GetInteger(std::string_view section, std::string_view entry, int otherwise = 0) const;
    /// Parses a number with "." as the decimal point; "inf" and "nan" are numbers.
    double GetDouble(std::string_view section, std::string_view entry, double otherwise = 0) const;
    /// Accepts true and false, yes and no, on and off, 1 and 0, in any case.
    BOOL GetBool(std::string_view section, std::string_view entry, BOOL otherwise = 0) const;
    /// Parses a date as COleDateTime::ParseDateTime does. The fields are taken as written, without a time zone.
    COleDateTime GetDate(std::string_view section, std::string_view entry, const COleDateTime& otherwise = {}) const;
    /// Parses hexadecimal digits, as written by SetBytes.
    CString GetBytes(std::string_view section, std::string_view entry, std::string_view otherwise = {}) const;
    /// Parses a record of comma-separated values (CStringHelper::CsvToArray); every string is valid. An empty string is
    /// an empty list.
    CStringArray GetList(std::string_view section, std::string_view entry, const CStringArray& otherwise = {}) const;

    /// Setters create section and entry if missing.
    void SetString(std::string_view section, std::string_view entry, std::string_view value);
    /// Stores decimal digits, with a minus sign if negative.
    void SetInteger(std::string_view section, std::string_view entry, int value);
    /// Stores enough digits to restore the same number.
    void SetDouble(std::string_view section, std::string_view entry, double value);
    /// Stores "true" or "false".
    void SetBool(std::string_view section, std::string_view entry, BOOL value);
    /// Stores "2004-05-05 14:03:07". @throws CInvalidArgException* for an invalid date.
    void SetDate(std::string_view section, std::string_view entry, const COleDateTime& value);
    /// Stores two hexadecimal digits per byte.
    void SetBytes(std::string_view section, std::string_view entry, std::string_view value);
    /// Stores a record of comma-separated values (CStringHelper::ArrayToCsv).
    void SetList(std::string_view section, std::string_view entry, const CStringArray& value);

    /// Each: No-op if it does not exist. A section is deleted with its comments.
    void DeleteEntry(std::string_view section, std::string_view entry);
    void DeleteSection(std::string_view section);

    /// Holds the file's lock while `changes` runs, and writes all its changes atomically. Getters of this object then
    /// return the values as changed so far, so that counters can be incremented. Other objects on this thread must not
    /// use the same file meanwhile: they would deadlock. A nested update is part of the outer one. An exception raised
    /// by `changes` is passed on, and nothing is changed.
    void Update(const std::function<void()>& changes);

private:
    qv::SettingSource& Source() const { return m_update ? *m_update : *m_source; }

    std::unique_ptr<qv::SettingSource> m_source;
    qv::SettingSource* m_update = nullptr;  // the content being changed while Update runs
};
