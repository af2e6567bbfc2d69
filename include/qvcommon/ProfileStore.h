#pragma once

/// @file Settings with types, by section and entry, in an INI file or in the application's profile.

#include <functional>
#include <memory>

#include "qvcommon/framework/Collections.h"
#include "qvcommon/framework/DateTime.h"

namespace qv {

class SettingSource;

}  // namespace qv

/// A file of settings, or the profile of the application (framework/WinApp.h), in which navigation bars keep theirs too.
///
/// Sections and entries go by their names without regard to the case of A to Z. Every value is a text; typed values have
/// text forms that are the same in every locale and on every system. docs/formats/profile.md describes the file: comments,
/// the order of lines and whatever else was written by hand stay as they are. Any file can be read: lines that are neither
/// headers, entries nor comments are passed over and kept.
///
/// Every member reads the file as it is now, so changes by others are seen at once. Every change replaces the file as a
/// whole while its lock is held: readers see the old version or the new one, and no writer, of this or another process,
/// undoes what another one has written. A member takes time linear in the size of the file; to set many values use Update.
/// Files larger than 16 MB are refused.
///
/// Where the application's profile is the registry or a private profile of Windows, these systems' rules hold instead: a
/// text with a zero byte or that is not well-formed in the code page is refused, and Update writes value by value.
///
/// Get members never raise: they return `otherwise` when the entry is missing, its text is no value of the type, or the file
/// cannot be read. All others raise CFileException* naming the file when the system cannot keep the change; the file is then
/// what it was. One object, one thread; any number of objects, of one file too.
class QVCOMMON_API ProfileStore {
public:
    /// The profile of AfxGetApp() as it is named now. On Linux its folder is made when the first value is set.
    ProfileStore();
    /// The file need not exist; its folder must, when a value is set.
    explicit ProfileStore(const char* file);
    ~ProfileStore();
    ProfileStore(const ProfileStore&) = delete;
    ProfileStore& operator=(const ProfileStore&) = delete;

    /// The file's path; empty for a profile that is not kept in a file of this format.
    CString GetFile() const;

    /// The names, each once, in the order of the file. Of several sections with one name the first counts.
    CStringArray GetSections() const;
    /// The names of a section's entries, each once, in the order of the file; none for a section that is missing.
    CStringArray GetEntries(std::string_view section) const;
    /// Whether the entry is there, whatever its text.
    bool HasEntry(std::string_view section, std::string_view entry) const;

    /// The text as it is.
    CString GetString(std::string_view section, std::string_view entry, std::string_view otherwise = {}) const;
    /// Decimal, with an optional sign; a number beyond 32 bits is no such value.
    int GetInteger(std::string_view section, std::string_view entry, int otherwise = 0) const;
    /// With a point before the decimals; "inf" and "nan" are numbers.
    double GetDouble(std::string_view section, std::string_view entry, double otherwise = 0) const;
    /// true and false, yes and no, on and off, 1 and 0, in any case.
    BOOL GetBool(std::string_view section, std::string_view entry, BOOL otherwise = 0) const;
    /// As COleDateTime::ParseDateTime reads it. The fields count as they are written, in no time zone.
    COleDateTime GetDate(std::string_view section, std::string_view entry, const COleDateTime& otherwise = {}) const;
    /// Hexadecimal digits, as they are written by SetBytes.
    CString GetBytes(std::string_view section, std::string_view entry, std::string_view otherwise = {}) const;
    /// A record of comma-separated values (CStringHelper::CsvToArray); any text is one. An empty text is an empty list.
    CStringArray GetList(std::string_view section, std::string_view entry, const CStringArray& otherwise = {}) const;

    /// Set members make section and entry when they are missing.
    void SetString(std::string_view section, std::string_view entry, std::string_view value);
    /// As decimal digits, with a minus sign where it is negative.
    void SetInteger(std::string_view section, std::string_view entry, int value);
    /// With as many digits as it takes to read the same number back.
    void SetDouble(std::string_view section, std::string_view entry, double value);
    /// "true" or "false".
    void SetBool(std::string_view section, std::string_view entry, BOOL value);
    /// "2004-05-05 14:03:07". @throws CInvalidArgException* for a date that is not valid.
    void SetDate(std::string_view section, std::string_view entry, const COleDateTime& value);
    /// As two hexadecimal digits a byte.
    void SetBytes(std::string_view section, std::string_view entry, std::string_view value);
    /// As a record of comma-separated values (CStringHelper::ArrayToCsv).
    void SetList(std::string_view section, std::string_view entry, const CStringArray& value);

    /// Each: What is not there is deleted already. A section goes with its comments.
    void DeleteEntry(std::string_view section, std::string_view entry);
    void DeleteSection(std::string_view section);

    /// Holds the file's lock while `changes` runs, and writes all that it sets and deletes at once: all of it or nothing.
    /// What it gets through this object is the text as it has changed so far, so that numbers can be counted up. Other
    /// objects must not use the same file meanwhile on this thread: they would wait for ever. An update within an update
    /// belongs to the outer one. What `changes` raises is passed on, and nothing has changed.
    void Update(const std::function<void()>& changes);

private:
    qv::SettingSource& Source() const { return m_update ? *m_update : *m_source; }

    std::unique_ptr<qv::SettingSource> m_source;
    qv::SettingSource* m_update = nullptr;  // the text under change while Update runs
};
