#include "platform/posix/text/TextRules.h"

#include <langinfo.h>
#include <locale.h>

#include <atomic>
#include <cstring>
#include <optional>

#include "qvcommon/CodePage.h"

namespace qv::platform {
namespace {

std::atomic<const CodeSet*> g_chosen = nullptr;

bool IsPlain(const char* codeset) {
    return !std::strcmp(codeset, "ANSI_X3.4-1968");
}

// A set that the system names but cannot convert is treated as UTF-8, which is lossless.
const CodeSet& SetOf(const char* codeset) {
    const CodeSet* const set = IsPlain(codeset) ? nullptr : CodeSet::Named(codeset);
    return set ? *set : CodeSet::Utf8();
}

const CodeSet& EnvironmentCodeSet() {
    static const CodeSet& set = []() -> const CodeSet& {
        const locale_t locale = ::newlocale(LC_CTYPE_MASK, "", nullptr);
        if (!locale) return CodeSet::Utf8();
        const CodeSet& named = SetOf(::nl_langinfo_l(CODESET, locale));
        ::freelocale(locale);
        return named;
    }();
    return set;
}

std::string Converted(std::string_view text, const CodeSet& from, const CodeSet& to) {
    if (&from == &to) return std::string(text);
    std::string out;
    for (std::size_t i = 0; i < text.size();) {
        const CodeSet::Character c = from.Read(text, i);
        if (!c.wellFormed || !to.Append(out, c.code)) out += '?';
        i += c.length;
    }
    return out;
}

// Returns the system's name of a code page; empty for invalid numbers.
std::string NameOf(int codePage) {
    constexpr int kLatin1 = 28591, kLatinLast = 28605;
    static constexpr std::pair<int, const char*> named[] = {{65001, "UTF-8"},  {20866, "KOI8-R"}, {21866, "KOI8-U"},
                                                            {20932, "EUC-JP"}, {51932, "EUC-JP"}, {51949, "EUC-KR"},
                                                            {54936, "GB18030"}};
    if (codePage <= 0) return {};
    for (const auto& [number, name] : named)
        if (number == codePage) return name;
    if (codePage >= kLatin1 && codePage <= kLatinLast) return "ISO-8859-" + std::to_string(codePage - kLatin1 + 1);
    return "CP" + std::to_string(codePage);
}

}  // namespace

const CodeSet& CurrentCodeSet() {
    if (const CodeSet* const chosen = g_chosen.load(std::memory_order_acquire)) return *chosen;
    const char* const codeset = ::nl_langinfo(CODESET);
    if (!std::strcmp(codeset, "UTF-8")) return CodeSet::Utf8();
    return IsPlain(codeset) ? EnvironmentCodeSet() : SetOf(codeset);
}

const CodeSet* LocaleCodeSet() {
    const char* const codeset = ::nl_langinfo(CODESET);
    return IsPlain(codeset) ? nullptr : &SetOf(codeset);
}

std::string FromLocale(std::string_view text) {
    const CodeSet* const locale = LocaleCodeSet();
    return locale ? Converted(text, *locale, CurrentCodeSet()) : std::string(text);
}

std::string ToLocale(std::string_view text) {
    const CodeSet* const locale = LocaleCodeSet();
    return locale ? Converted(text, CurrentCodeSet(), *locale) : std::string(text);
}

CharacterRules CharacterRules::Current() {
    static const locale_t neutral = ::newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
    return CharacterRules(IsPlain(::nl_langinfo(CODESET)) ? neutral : nullptr);
}

char32_t CharacterRules::Cased(char32_t code, Case which) const {
    const auto wide = static_cast<wint_t>(code);
    if (!m_neutral) return which == Case::Upper ? ::towupper(wide) : ::towlower(wide);
    return which == Case::Upper ? ::towupper_l(wide, m_neutral) : ::towlower_l(wide, m_neutral);
}

bool CharacterRules::IsLetter(char32_t code) const {
    const auto wide = static_cast<wint_t>(code);
    return m_neutral ? ::iswalpha_l(wide, m_neutral) : ::iswalpha(wide);
}

bool CharacterRules::IsSpace(char32_t code) const {
    const auto wide = static_cast<wint_t>(code);
    return m_neutral ? ::iswspace_l(wide, m_neutral) : ::iswspace(wide);
}

}  // namespace qv::platform

extern "C" int _setmbcp(int codePage) {
    using namespace qv::platform;
    constexpr int kWestern = 1252;
    const CodeSet* chosen = nullptr;
    const bool ends = codePage == _MB_CP_OEM || codePage == _MB_CP_ANSI || codePage == _MB_CP_LOCALE;
    if (!ends) {
        chosen = CodeSet::Named(NameOf(codePage == _MB_CP_SBCS ? kWestern : codePage));
        if (!chosen || !chosen->HoldsAscii()) return -1;
    }
    g_chosen.store(chosen, std::memory_order_release);
    return 0;
}
