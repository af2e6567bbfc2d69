#pragma once

/// @file Rewriting the marked regions of a text: each region between a start marker and an end marker has its markers
/// replaced and its inner text passed through a member that derived classes override.
///
/// One object, one thread. The order of the virtual members is part of the interface.

#include "qvcommon/framework/Collections.h"

/// The base leaves the inner texts as they are. Copies have the same markers, replacements and case rule.
class QVCOMMON_API CEscapedStringReplacer {
public:
    /// Empty markers and replacements; markers are found without regard to case.
    CEscapedStringReplacer() = default;
    CEscapedStringReplacer(const CEscapedStringReplacer&) = default;
    CEscapedStringReplacer& operator=(const CEscapedStringReplacer&) = default;
    virtual ~CEscapedStringReplacer();

    /// Returns the text with its regions rewritten, from left to right.
    ///
    /// The search for the next start marker begins at the end marker, not behind it: where both markers are the same, each
    /// end marker is the next start marker, and "%" on both sides makes regions of b and c in "a%b%c%d". A start marker
    /// without an end marker is still replaced, and what follows it stays. An empty start marker is found nowhere; an empty
    /// end marker right behind the start marker. Time grows with the text and the result.
    virtual CString ReplaceEscapes(std::string_view text);

    /// Not zero: markers are found case and all.
    virtual void SetCaseSentitive(int caseSensitive);

    /// Each: the marker before a region, or the one after it, and what takes its place in the result. A virtual call
    /// each.
    virtual CString GetStartFind() const;
    virtual CString GetStartReplace() const;
    virtual CString GetEndFind() const;
    virtual CString GetEndReplace() const;
    /// Each: sets what the getter of that name returns.
    virtual void SetStartFind(std::string_view text);
    virtual void SetStartReplace(std::string_view text);
    virtual void SetEndFind(std::string_view text);
    virtual void SetEndReplace(std::string_view text);

protected:
    /// What takes the place of a region's inner text: the inner text itself. Called once a region, in order. It may
    /// call the setters; new replacements count from then on, new markers and a new case rule from the next
    /// ReplaceEscapes on.
    virtual CString GetEscapedText(std::string_view inner);

private:
    CString m_startFind, m_startReplace, m_endFind, m_endReplace;
    int m_caseSensitive = 0;
};

/// Puts a space in the place of every tag: from "<" to the next ">".
class QVCOMMON_API CStripTag : public CEscapedStringReplacer {
public:
    CStripTag();

protected:
    /// A single space, whatever the inner text.
    CString GetEscapedText(std::string_view inner) override;
};

/// Takes the inner texts out of a text, markers included, and appends them to the caller's array. The markers are the
/// caller's to set, as is the array, which has to outlive this object.
class QVCOMMON_API CGetEscapedStrings : public CEscapedStringReplacer {
public:
    /// Refers to the array.
    explicit CGetEscapedStrings(CStringArray& texts) : m_texts(texts) {}

protected:
    CString GetEscapedText(std::string_view inner) override;

private:
    CStringArray& m_texts;
};
