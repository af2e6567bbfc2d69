#pragma once

/// @file Navigation bars: small titled tables of choices, the current one marked, the others links that carry a command
/// back to the application.

#include "qvcommon/HtmlWriter.h"

namespace qv {

/// Where a bar keeps a text: in the application's profile (CWinApp::WriteProfileString), or with an empty section nowhere.
class QVCOMMON_API StoredText {
public:
    /// Names the place; nothing is read yet.
    StoredText(const char* section, const char* entry) : m_section(section), m_entry(entry) {}

    /// The profile's text, empty when it has none; `otherwise` with an empty section.
    CString Read(const CString& otherwise) const;
    /// Keeps the text; nothing happens with an empty section.
    void Write(const CString& text) const;

private:
    CString m_section;
    CString m_entry;
};

}  // namespace qv

/// A bar. It can be rolled up: a click on its title hides or shows the choices, and the page's cookie keeps which bars are
/// open, by their ids. The scripts speak the object model of old browsers; CHtmlWriter::AddBrowserSupport makes them work
/// in those of today. A page with bars that roll up must have no drop-down sections, whose scripts use the same names.
///
/// Names, choices and sub-headings are escaped; commands, keys, ids and pictures are not, and must hold no quote.
/// One bar, one thread; the two pictures are shared by all bars.
class QVCOMMON_API CNavBar {
public:
    CNavBar();

    // The operations that derived classes change, in this order.
    virtual ~CNavBar() = default;
    /// Writes the whole bar.
    virtual void GenerateHtml(CHtmlWriter& writer);
    /// The title; empty at first.
    virtual void SetName(const char* name);
    virtual CString GetName();
    /// What every link's address begins with; the choice's key follows.
    virtual void SetCommand(const char* prefix);
    /// Takes a command that one of the bar's links sent. 0, and nothing done, for all others, and without a prefix.
    virtual int ProcessCommand(const char* command);
    /// Stands before the current choice; empty for none.
    virtual void SetSelectionImage(const char* image);
    virtual CString GetSelectionImage();
    /// Names the bar in the cookie. By default it is new with every object, so that a page made anew starts with its bars
    /// rolled up: an application that wants them as they were keeps the ids.
    virtual void SetRollupGuid(const char* id);
    /// Zero: a click on the title does nothing, and no sub-heading is shown. Non-zero at first.
    virtual void SetAllowRollup(int allow);

protected:
    /// The row with the title.
    virtual void AddHeading(CHtmlWriter& writer);
    /// The rows of the choices; none here.
    virtual void AddBody(CHtmlWriter& writer);
    /// Takes what follows the prefix in a command; 0 when it means nothing here, as always in this class.
    virtual int ProcessSubcommand(const char* rest);

public:
    /// A summary of the current choice, shown while the bar is rolled up.
    virtual CString GetSubHeading();

protected:
    /// Each: Keep the choice in the application's profile, and get it back; nothing here.
    virtual void SaveState() const;
    virtual void RestoreState();

public:
    /// Sets the pictures of closed and open bars, for all bars, and writes the script; once a page, before its bars.
    static void AddRollupScript(const char* rolledUpImage, const char* rolledDownImage, CHtmlWriter& writer);
    /// Restores what the cookie says, and saves it when the page is left; once a page, after its last bar.
    static void AddRollupScriptCookie(CHtmlWriter& writer);

    /// The pictures that AddRollupScript got.
    static CString ms_strRolledUpImage, ms_strRolledDownImage;

protected:
    /// One row of a body. The address is the prefix and the key.
    void AddChoice(CHtmlWriter& writer, bool isCurrent, const CString& key, const CString& text) const;

private:
    CString m_strName;
    CString m_strCommand;
    CString m_strSelectionImage;
    int m_bAllowRollup = 1;
    CString m_strRollupGuid;
};

/// Choices by their index.
class QVCOMMON_API COptionNavBar : public CNavBar {
public:
    /// The index of the current choice, from 0; 0 at first.
    int GetOption() const { return m_nOption; }
    /// Any number; one without a text marks no choice.
    void SetOption(int index) { m_nOption = index; }
    /// The texts of the choices. The current index stays.
    void SetOptions(const CStringArray& texts) { m_options = texts; }
    void GetOptions(CStringArray& texts) const { texts = m_options; }
    /// The first option that equals the text, without regard to case. Without one the option is -1, and the result 0.
    int SetOptionByText(std::string_view text);
    /// Empty without a current option.
    CString GetOptionText() const;
    CString GetSubHeading() override { return GetOptionText(); }

protected:
    void AddBody(CHtmlWriter& writer) override;
    /// The number at the start of the text becomes the option, 0 without one; always 1.
    int ProcessSubcommand(const char* rest) override;

private:
    CStringArray m_options;
    int m_nOption = 0;
};

/// Choices by their text. The current one is kept in the application's profile under the section and entry, or in this
/// object only with an empty section, as with the two classes below.
class QVCOMMON_API CStringOptionNavBar : public CNavBar {
public:
    /// Reads the current option from the profile.
    CStringOptionNavBar(const char* section, const char* entry);

    /// The texts of the choices. The current one stays.
    void SetOptions(const CStringArray& options) { m_options = options; }
    /// As the profile has it now; empty when that is none of the options.
    CString GetOption();
    /// Any text; it goes into the profile.
    void SetOption(const char* option);
    /// What the page shows for an option; the option itself, unless a derived class knows better.
    virtual CString GetReadableName(const CString& option);
    CString GetSubHeading() override;

protected:
    /// A profile that holds none of the options is set to none.
    void AddBody(CHtmlWriter& writer) override;
    /// The first option that equals the text without regard to case becomes the current one; 0 when there is none.
    int ProcessSubcommand(const char* rest) override;
    void SaveState() const override;
    void RestoreState() override;

private:
    CStringArray m_options;
    CString m_strOption;
    qv::StoredText m_stored;
};

/// Groups with names for readers and keys for the profile.
class QVCOMMON_API CGroupNavBar : public CNavBar {
public:
    /// Reads the current key from the profile.
    CGroupNavBar(const char* section, const char* entry);

    /// @throws CInvalidArgException* when there are fewer keys than names; nothing changes then.
    void SetGroups(const CStringArray& names, const CStringArray& keys);
    /// The name of the current group; empty when there is none.
    CString GetGroup() const;
    /// Any key; it goes into the profile.
    void SetOption(const char* key);
    CString GetOption() const { return m_strKey; }
    CString GetSubHeading() override { return GetGroup(); }

protected:
    /// A profile that holds none of the keys is set to none.
    void AddBody(CHtmlWriter& writer) override;
    /// A group's key, case and all, becomes the current one; 0 for any other text.
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

/// The things used last, the latest first, kept in the profile as a list with "," between the ids: an id must hold none.
class QVCOMMON_API CMruNavBar : public CNavBar {
public:
    /// @param capacity  how many ids there are at most; at least 1.
    CMruNavBar(int capacity, const char* section, const char* entry);

    /// Puts the id to the front, makes it the current one and saves the list. When the list is full the last id goes.
    void AddId(const char* id);
    /// Each: The whole list, empty places too. Fewer ids than the capacity leave empty places, more are cut off. The
    /// constructor loads the list by this class's own rule.
    virtual void SaveToRegistry();
    virtual void LoadFromRegistry();
    CString GetSubHeading() override;

protected:
    /// What the page shows for an id; one without such a text is not listed. The id itself, unless a derived class knows
    /// better.
    virtual CString GetDisplayText(const CString& id);
    void AddBody(CHtmlWriter& writer) override;
    /// 0: what a chosen id means is the application's business.
    int ProcessSubcommand(const char* rest) override;

private:
    CStringArray m_ids;
    qv::StoredText m_stored;
    CString m_strCurrent;
    int m_nCapacity;
};
