#include <array>
#include <charconv>
#include <mutex>

#include "platform/Ascii.h"
#include "platform/Text.h"
#include "qvcommon/XmlHelper.h"

namespace {

using qv::platform::CodePage;

constexpr unsigned char kFirstInvalid = 0x80, kLastInvalid = 0x9F;

struct Entity {
    char character;
    std::string_view text;
};
constexpr Entity kTextEntities[] = {{'&', "&amp;"}, {'<', "&lt;"}, {'>', "&gt;"}};
constexpr Entity kAttributeEntities[] = {
    {'&', "&amp;"}, {'"', "&quot;"}, {'\'', "&apos;"}, {'<', "&lt;"}, {'>', "&gt;"}};

bool IsInvalid(char c) {
    const auto byte = static_cast<unsigned char>(c);
    return byte >= kFirstInvalid && byte <= kLastInvalid;
}

// The replacement of each byte, by default itself; bytes written as references only if `references` is set.
using Table = std::array<std::string_view, 256>;

template <std::size_t N>
Table TableOf(const Entity (&entities)[N]) {
    Table table{};
    for (const Entity& entity : entities) table[static_cast<unsigned char>(entity.character)] = entity.text;
    return table;
}

void AppendReference(std::string& out, char c) {
    char digits[4];
    const auto end = std::to_chars(digits, digits + 4, static_cast<unsigned char>(c)).ptr;
    out.append("&#").append(digits, end).append(";");
}

std::size_t LengthAt(std::string_view text, std::size_t i, CodePage page) {
    return qv::ascii::IsAscii(text[i]) ? 1 : qv::platform::CharacterLength(text, i, page);
}

void Escape(CString& text, const Table& table) {
    const CodePage page = qv::platform::CurrentCodePage();
    const std::string_view bytes = text;
    std::string out;
    std::size_t from = 0;
    for (std::size_t i = 0, length; i < bytes.size(); i += length) {
        length = LengthAt(bytes, i, page);
        const std::string_view entity = table[static_cast<unsigned char>(bytes[i])];
        const bool reference = length == 1 && IsInvalid(bytes[i]);
        if (entity.empty() && !reference) continue;
        out.append(bytes, from, i - from).append(entity);
        if (reference) AppendReference(out, bytes[i]);
        from = i + 1;
    }
    if (from == 0) return;
    text = CString(std::move(out.append(bytes, from)));
}

// Returns the byte for "&#128;" to "&#159;" at the front of the text; otherwise 0.
char ReferenceAt(std::string_view text) {
    if (text.size() < 6 || text[1] != '#' || text[5] != ';') return 0;
    int number = 0;
    const auto [end, error] = std::from_chars(text.data() + 2, text.data() + 5, number);
    const bool whole = error == std::errc() && end == text.data() + 5;
    return whole && number >= kFirstInvalid && number <= kLastInvalid ? static_cast<char>(number) : '\0';
}

struct Mark {
    char character = 0;  // 0 if there is no mark
    std::size_t length = 0;
};

template <std::size_t N>
Mark MarkAt(std::string_view text, const Entity (&entities)[N]) {
    if (const char byte = ReferenceAt(text)) return {byte, 6};
    for (const Entity& entity : entities)
        if (text.starts_with(entity.text)) return {entity.character, entity.text.size()};
    return {};
}

// One pass gives the same result as successive replacements with "&amp;" last: marks do not overlap, and no replacement
// creates another mark. Bytes from references may form a multi-byte character, but those are not examined again.
template <std::size_t N>
void Unescape(CString& text, const Entity (&entities)[N], bool lineEnds) {
    const std::string_view bytes = text;
    std::string out;
    std::size_t from = 0;
    for (std::size_t i = bytes.find_first_of("&\n"); i < bytes.size(); i = bytes.find_first_of("&\n", i)) {
        const Mark mark = bytes[i] == '&' ? MarkAt(bytes.substr(i), entities) : Mark{'\n', 1};
        const bool replaced = mark.character && (bytes[i] != '\n' || lineEnds);
        if (!replaced) {
            ++i;
            continue;
        }
        out.append(bytes, from, i - from);
        if (bytes[i] == '\n') out += '\r';
        out += mark.character;
        from = i += mark.length;
    }
    if (from == 0) return;
    text = CString(std::move(out.append(bytes, from)));
}

}  // namespace

BOOL CXmlHelper::ms_bSetupInvalidCharArray = 0;
CStringArray CXmlHelper::ms_InvalidCharsSearch, CXmlHelper::ms_InvalidCharsReplace;

void CXmlHelper::SetupInvalidCharArray() {
    static std::once_flag once;
    std::call_once(once, [] {
        for (int byte = kFirstInvalid; byte <= kLastInvalid; ++byte) {
            const CString text(static_cast<char>(byte));
            std::string reference;
            AppendReference(reference, text[0]);
            ms_InvalidCharsSearch.Add(text);
            ms_InvalidCharsReplace.Add(reference);
        }
        ms_bSetupInvalidCharArray = 1;
    });
}

CString& CXmlHelper::Clean(CString& text) {
    SetupInvalidCharArray();
    static const Table table = TableOf(kTextEntities);
    Escape(text, table);
    return text;
}

CString& CXmlHelper::Dirty(CString& text) {
    SetupInvalidCharArray();
    Unescape(text, kTextEntities, true);
    return text;
}

CString& CXmlHelper::CleanAttribute(CString& text) {
    SetupInvalidCharArray();
    static const Table table = TableOf(kAttributeEntities);
    Escape(text, table);
    return text;
}

CString& CXmlHelper::DirtyAttribute(CString& text) {
    SetupInvalidCharArray();
    Unescape(text, kAttributeEntities, true);
    return text;
}

void CXmlHelper::CleanInvalidChars(CString& text) {
    SetupInvalidCharArray();
    Escape(text, Table{});
}

void CXmlHelper::DirtyInvalidChars(CString& text) {
    SetupInvalidCharArray();
    constexpr Entity none[] = {{'\0', std::string_view("\0\0", 2)}};
    Unescape(text, none, false);
}
