#pragma once

/// @file What the bytes of texts mean at this moment, and by whose rules their letters change case.

#include <wctype.h>

#include "platform/Text.h"
#include "platform/posix/text/CodeSet.h"

namespace qv::platform {

/// The set that was chosen, else that of the C locale, else that of the environment, else UTF-8.
const CodeSet& CurrentCodeSet();

/// Of the C locale that the program has chosen; null while it is the plain "C".
const CodeSet* LocaleCodeSet();

/// A text of the C library in the process's code page, and the way back, for its collation. What the other side lacks
/// becomes "?".
std::string FromLocale(std::string_view text);
std::string ToLocale(std::string_view text);

/// Classes and case of characters: by the C locale, or by Unicode's own rules while that is the plain "C".
class CharacterRules {
public:
    static CharacterRules Current();

    bool AreNeutral() const { return m_neutral != nullptr; }
    char32_t Cased(char32_t code, Case which) const;
    bool IsLetter(char32_t code) const;
    bool IsSpace(char32_t code) const;

private:
    explicit CharacterRules(locale_t neutral) : m_neutral(neutral) {}

    locale_t m_neutral;
};

}  // namespace qv::platform
