#pragma once

/// @file The current encoding of texts, and the case rules of their letters.

#include <wctype.h>

#include "platform/Text.h"
#include "platform/posix/text/CodeSet.h"

namespace qv::platform {

/// Returns the selected set, else that of the C locale, else that of the environment, else UTF-8.
const CodeSet& CurrentCodeSet();

/// Returns the set of the program's C locale; null for the plain "C".
const CodeSet* LocaleCodeSet();

/// Converts a text of the C library to the process's code page, and back, for its collation. Characters that the target
/// lacks become "?".
std::string FromLocale(std::string_view text);
std::string ToLocale(std::string_view text);

/// Classes and case of characters: by the C locale, or by Unicode's rules for the plain "C".
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
