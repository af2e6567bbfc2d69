#pragma once

/// @file Navigation bars: small titled tables of choices; the current one is marked, the others are links that send a
/// command to the application.

#include "qvcommon/HtmlWriter.h"

namespace qv {

/// A string stored in the application's profile (CWinApp::WriteProfileString), or with an empty section nowhere.
class QVCOMMON_API StoredText {
public:
    /// Sets the location; nothing is read yet.
    StoredText(const char* section, const char* entry) : m_section(section), m_entry(entry) {}

    /// Returns the profile's string, empty if it does not exist; `otherwise` if the section is empty.
    CString Read(const CString& otherwise) const;
    /// Stores the string; no-op if the section is empty.
    void Write(const CString& text) const;

private:
    CString m_section;
    CString m_entry;
};

}  // namespace qv

/// A bar. It can be collapsed: a click on its title hides or shows the choices, and the page's cookie stores which bars
/// are open, by their ids. The scripts use the object model of old browsers; CHtmlWriter::AddBrowserSupport makes them
/// work in current ones. A page with collapsible bars must have no drop-down sections, whose scripts use the same
/// names.
///
/// Names, choices and sub-headings are escaped; commands, keys, ids and pictures are not, and must not contain quotes.
/// Not thread-safe; the two pictures are shared by all bars.
class QVCOMMON_API CNavBar {
public:
    CNavBar();

    // The operations that derived classes override, in this order.
    virtual ~CNavBar() = default;
    /// Writes the whole bar.
    virtual void GenerateHtml(CHtmlWriter& writer);
    /// The title; empty by default.
    virtual void SetName(const char* name);
    virtual CString GetName();
    /// Sets the prefix of every link's address; the choice's key follows it.
    virtual void SetCommand(const char* prefix);
    /// Processes a command sent by one of the bar's links. Returns 0, without effect, for all others, and without a
    /// prefix.
    virtual int ProcessCommand(const char* command);
    /// The picture before the current choice; empty for none.
    virtual void SetSelectionImage(const char* image);
    virtual CString GetSelectionImage();
    /// Sets the bar's id in the cookie. It is unique per object by default, so that a regenerated page starts with its
    /// bars collapsed: an application that wants to restore them must keep the ids.
    virtual void SetRollupGuid(const char* id);
    /// Zero: a click on the title has no effect, and no sub-heading is shown. Non-zero by default.
    virtual void SetAllowRollup(int allow);

protected:
    /// Writes the row with the title.
    virtual void AddHeading(CHtmlWriter& writer);
    /// Writes the rows of the choices; none here.
    virtual void AddBody(CHtmlWriter& writer);
    /// Processes the part of a command after the prefix; returns 0 if it is unknown, as always in this class.
    virtual int ProcessSubcommand(const char* rest);

public:
    /// Returns a summary of the current choice, shown while the bar is collapsed.
    virtual CString GetSubHeading();

protected:
    /// Each: Saves the choice to the application's profile, and restores it; no-op here.
    virtual void SaveState() const;
    virtual void RestoreState();

public:
    /// Sets the pictures of collapsed and open bars, for all bars, and writes the script; once per page, before its
    /// bars.
    static void AddRollupScript(const char* rolledUpImage, const char* rolledDownImage, CHtmlWriter& writer);
    /// Restores the state from the cookie, and saves it when the page is left; once per page, after its last bar.
    static void AddRollupScriptCookie(CHtmlWriter& writer);

    /// The pictures passed to AddRollupScript.
    static CString ms_strRolledUpImage, ms_strRolledDownImage;

protected:
    /// Writes one row of a body. The address is the prefix and the key.
    void AddChoice(CHtmlWriter& writer, bool isCurrent, const CString& key, const CString& text) const;

private:
    CString m_strName;
    CString m_strCommand;
    CString m_strSelectionImage;
    int m_bAllowRollup = 1;
    CString m_strRollupGuid;
};

/// Choices identified by index.
class QVCOMMON_API COptionNavBar : public CNavBar {
public:
    /// The index of the current choice, 0 by default.
    int GetOption() const { return m_nOption; }
    /// Accepts any number; one without a text marks no choice.
    void SetOption(int index) { m_nOption = index; }
    /// Sets the texts of the choices, keeping the current index.
    void SetOptions(const CStringArray& texts) { m_options = texts; }
    void GetOptions(CStringArray& texts) const { texts = m_options; }
    /// Selects the first option that equals the text, ignoring case. Without one the option becomes -1, and the result
    /// is 0.
    int SetOptionByText(std::string_view text);
    /// Returns the text of the current option; empty without one.
    CString GetOptionText() const;
    CString GetSubHeading() override { return GetOptionText(); }

protected:
    void AddBody(CHtmlWriter& writer) override;
    /// Sets the option to the number at the start of the text, 0 without one; always returns 1.
    int ProcessSubcommand(const char* rest) override;

private:
    CStringArray m_options;
    int m_nOption = 0;
};

/// Choices identified by text. The current one is stored in the application's profile under the section and entry, or
/// with an empty section only in this object, as in the two classes below.
class QVCOMMON_API CStringOptionNavBar : public CNavBar {
public:
    /// Reads the current option from the profile.
    CStringOptionNavBar(const char* section, const char* entry);

    /// Sets the texts of the choices, keeping the current one.
    void SetOptions(const CStringArray& options) { m_options = options; }
    /// Returns the option currently in the profile; empty if it is not among the options.
    CString GetOption();
    /// Accepts any text; stores it in the profile.
    void SetOption(const char* option);
    /// Returns the displayed text of an option; the option itself by default.
    virtual CString GetReadableName(const CString& option);
    CString GetSubHeading() override;

protected:
    /// A stored value that is not among the options is cleared.
    void AddBody(CHtmlWriter& writer) override;
    /// Selects the first option that equals the text, ignoring case; returns 0 if none exists.
    int ProcessSubcommand(const char* rest) override;
    void SaveState() const override;
    void RestoreState() override;

private:
    CStringArray m_options;
    CString m_strOption;
    qv::StoredText m_stored;
};

/// Groups with displayed names, and keys for the profile.
class QVCOMMON_API CGroupNavBar : public CNavBar {
public:
    /// Reads the current key from the profile.
    CGroupNavBar(const char* section, const char* entry);

    /// @throws CInvalidArgException* if there are fewer keys than names; nothing changes then.
    void SetGroups(const CStringArray& names, const CStringArray& keys);
    /// Returns the name of the current group; empty if none exists.
    CString GetGroup() const;
    /// Accepts any key; stores it in the profile.
    void SetOption(const char* key);
    CString GetOption() const { return m_strKey; }
    CString GetSubHeading() override { return GetGroup(); }

protected:
    /// A stored value that is not among the keys is cleared.
    void AddBody(CHtmlWriter& writer) override;
    /// Selects the group with this key, case-sensitively; returns 0 for any other text.
    int ProcessSubcommand(const char* rest) override;
    void SaveState() const override;
    void RestoreState() override;

private:
    int FindKey(std::string_view key) const;

    CStringArray m_names;
    CStringArray m_keys;
    qv::StoredText m_stored;
    CString m_strKey;
};

/// The most recently used items, newest first, stored in the profile as a comma-separated list: an id must not contain
/// ",".
class QVCOMMON_API CMruNavBar : public CNavBar {
public:
    /// @param capacity  the maximum number of ids; at least 1.
    CMruNavBar(int capacity, const char* section, const char* entry);

    /// Moves the id to the front, makes it the current one and saves the list. If the list is full, the last id is
    /// removed.
    void AddId(const char* id);
    /// Each: Saves or loads the whole list, including empty entries. If there are fewer ids than the capacity the rest
    /// is empty, excess ones are dropped. The constructor calls this class's own version.
    virtual void SaveToRegistry();
    virtual void LoadFromRegistry();
    CString GetSubHeading() override;

protected:
    /// Returns the displayed text of an id; an id with an empty text is not listed. The id itself by default.
    virtual CString GetDisplayText(const CString& id);
    void AddBody(CHtmlWriter& writer) override;
    /// Returns 0: the application defines what selecting an id does.
    int ProcessSubcommand(const char* rest) override;

private:
    CStringArray m_ids;
    qv::StoredText m_stored;
    CString m_strCurrent;
    int m_nCapacity;
};
