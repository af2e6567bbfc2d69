#include <algorithm>
#include <cstring>
#include <iterator>
#include <span>
#include <unordered_set>

#include "core/ByteScan.h"
#include "core/TextSink.h"
#include "framework/ExactSearch.h"
#include "platform/Ascii.h"
#include "platform/Text.h"
#include "qvcommon/StringHelper.h"

using qv::platform::CharacterLength;
using qv::platform::CodePage;
using qv::platform::CurrentCodePage;

namespace {

using Texts = std::vector<CString>;

// Splits a text at a separator, and calls `keep` with each piece.
class Cutter {
public:
    Cutter(std::string_view text, std::string_view separator)
        : m_text(text),
          m_separator(separator),
          m_isShort(!separator.empty() && separator.size() <= kShort && !qv::MayMatchPart(text, separator)) {}

    template <class Keep>
    void Cut(Keep keep) const {
        std::size_t from = 0;
        const auto cutAt = [&](std::size_t hit) {
            keep(m_text.substr(from, hit - from));
            from = hit + m_separator.size();
        };
        if (m_isShort)
            qv::ForEachByte(qv::OneByte(m_separator[0]), m_text, [&](std::size_t hit) {
                if (hit >= from && m_text.substr(hit + 1).starts_with(m_separator.substr(1))) cutAt(hit);
            });
        else if (!m_separator.empty())
            SearchFor(cutAt, from);
        keep(m_text.substr(from));
    }

    // Scans the text again for a short separator; returns 0 for long ones, whose pieces are few.
    template <class IsKept>
    std::size_t CountPieces(IsKept isKept) const {
        std::size_t count = 0;
        if (m_isShort) Cut([&](std::string_view piece) { count += isKept(piece); });
        return count;
    }

private:
    template <class CutAt>
    void SearchFor(CutAt cutAt, const std::size_t& from) const {
        qv::ExactSearch search(m_text, m_separator);
        for (std::size_t hit; (hit = search.Find(from)) != m_text.npos;) cutAt(hit);
    }

    static constexpr std::size_t kShort = 4;

    std::string_view m_text, m_separator;
    // Few bytes to compare at each candidate position, and no risk of splitting a character.
    bool m_isShort;
};

Texts Split(std::string_view text, std::string_view separator, bool keepEmpty) {
    const auto isKept = [keepEmpty](std::string_view piece) { return keepEmpty || !piece.empty(); };
    const Cutter cutter(text, separator);
    Texts pieces;
    pieces.reserve(cutter.CountPieces(isKept));
    cutter.Cut([&](std::string_view piece) {
        if (isKept(piece)) pieces.emplace_back(piece);
    });
    return pieces;
}

std::size_t JoinedSize(std::span<const CString> texts, std::size_t separator) {
    std::size_t size = 0;
    for (const CString& text : texts) size += text.AsStd().size() + separator;
    return size;
}

void Append(Texts&& pieces, CStringArray& array) {
    Texts& target = array.AsStd();
    if (target.empty())
        target = std::move(pieces);
    else
        target.insert(target.end(), std::make_move_iterator(pieces.begin()), std::make_move_iterator(pieces.end()));
}

// Splits a text at any character of a set.
class CharacterSplitter {
public:
    explicit CharacterSplitter(std::string_view separators) : m_page(CurrentCodePage()) {
        for (std::size_t i = 0; i < separators.size();) {
            const std::size_t length = CharacterLength(separators, i, m_page);
            m_separators.insert(separators.substr(i, length));
            m_bytes[static_cast<unsigned char>(separators[i])] = true;
            i += length;
        }
    }

    template <class Piece>
    void Split(std::string_view text, Piece piece) const {
        std::size_t from = 0;
        for (std::size_t i = 0; i < text.size();) {
            const std::size_t length = LengthAt(text, i);
            if (IsSeparator(text.substr(i, length))) {
                piece(text.substr(from, i - from));
                from = i + length;
            }
            i += length;
        }
        piece(text.substr(from));
    }

private:
    std::size_t LengthAt(std::string_view text, std::size_t position) const {
        const bool plain = qv::ascii::IsAscii(text[position]);
        return plain ? 1 : CharacterLength(text, position, m_page);
    }

    bool IsSeparator(std::string_view character) const {
        return m_bytes[static_cast<unsigned char>(character[0])] &&
               (m_page == CodePage::SingleByte || m_separators.count(character));
    }

    CodePage m_page;
    bool m_bytes[256] = {};  // the first bytes of separators
    std::unordered_set<std::string_view> m_separators;
};

constexpr std::string_view kWrittenComma = "\\0x2C";

}  // namespace

void CStringHelper::SplitString(std::string_view text, std::string_view separator, CStringArray& pieces,
                                int keepEmpty) {
    Append(Split(text, separator, keepEmpty != 0), pieces);
}

CStringArray CStringHelper::SplitString(std::string_view text, std::string_view separator, int keepEmpty) {
    CStringArray pieces;
    SplitString(text, separator, pieces, keepEmpty);
    return pieces;
}

CStringArray CStringHelper::SplitCharsString(std::string_view text, std::string_view separators) {
    CStringArray pieces;
    SplitCharsString(text, separators, pieces);
    return pieces;
}

CStringArray CStringHelper::StringToStringArray(std::string_view text) {
    CStringArray texts;
    StringToStringArray(text, texts);
    return texts;
}

void CStringHelper::SplitCharsString(std::string_view text, std::string_view separators, CStringArray& pieces) {
    Texts found;
    CharacterSplitter(separators).Split(text, [&](std::string_view piece) {
        CString trimmed(piece);
        trimmed.TrimRight();
        trimmed.TrimLeft();
        if (!trimmed.IsEmpty()) found.push_back(std::move(trimmed));
    });
    Append(std::move(found), pieces);
}

void CStringHelper::MakeString(const CStringArray& texts, std::string_view separator, CString& out, int lastIndex,
                               int keepEmpty) {
    CString joined = MakeString(texts, separator, lastIndex, keepEmpty);
    if (out.IsEmpty())
        out = std::move(joined);
    else
        out += joined;
}

CString CStringHelper::MakeString(const CStringArray& texts, std::string_view separator, int lastIndex, int keepEmpty) {
    const int count = lastIndex == -1 ? texts.GetSize() : std::clamp(lastIndex, -1, texts.GetUpperBound()) + 1;
    const auto joining = std::span(texts.AsStd()).first(static_cast<std::size_t>(count));
    std::string joined;
    joined.reserve(JoinedSize(joining, separator.size()));
    qv::TextSink sink(joined);
    char* at = sink.Begin();
    bool first = true;
    for (const CString& text : joining) {
        if (!keepEmpty && text.IsEmpty()) continue;
        if (!first) at = sink.Append(at, separator);
        at = sink.Append(at, text);
        first = false;
    }
    sink.Flush(at);
    return joined;
}

CString CStringHelper::MakeList(const CStringArray& texts, int useAnd, std::string_view separator) {
    const int last = texts.GetUpperBound();
    if (last < 1) return MakeString(texts, separator, -1, 1);
    return MakeString(texts, separator, last - 1, 1) + (useAnd ? " and " : separator) + texts[last];
}

CString CStringHelper::StringArrayToString(const CStringArray& texts) {
    std::string out;
    for (const CString& text : texts) {
        if (&text != &*texts.begin()) out += ',';
        CString written = text;
        written.Replace(",", kWrittenComma);
        out += written.AsStd();
    }
    return out;
}

void CStringHelper::StringToStringArray(std::string_view text, CStringArray& texts) {
    Texts found = Split(text, ",", false);
    for (CString& piece : found) piece.Replace(kWrittenComma, ",");
    texts.AsStd() = std::move(found);
}

void CStringHelper::FromMultiSz(const char* buffer, CStringArray& texts) {
    CStringArray found;  // the buffer may be one of the elements
    for (; buffer && *buffer; buffer += std::strlen(buffer) + 1) found.Add(std::string_view(buffer));
    texts.Append(found);
}

unsigned long CStringHelper::CalculateMultiSzBufferSize(const CStringArray& texts) {
    std::size_t size = 1;
    for (const CString& text : texts) size += text.AsStd().size() + 1;
    return static_cast<unsigned long>(size);
}

void CStringHelper::ToMultiSz(const CStringArray& texts, char* buffer, unsigned long size) {
    if (size < 3) return void(std::fill_n(buffer, size, '\0'));
    unsigned long used = 0;
    for (const CString& text : texts) {
        if (used + 2 > size || (used + 2 == size && !text.IsEmpty())) break;
        const std::size_t kept = std::min<std::size_t>(text.AsStd().size(), size - used - 2);
        std::memcpy(buffer + used, text.AsStd().data(), kept);
        used += static_cast<unsigned long>(kept);
        buffer[used++] = '\0';
    }
    buffer[used] = '\0';
}

void CStringHelper::MungeStringArrays(const CStringArray& a, const CStringArray& b, CStringArray& out) {
    if (b.GetSize() < a.GetSize()) AfxThrowInvalidArgException();
    Texts munged;
    munged.reserve(a.AsStd().size());
    for (int i = 0; i < a.GetSize(); ++i) munged.push_back(a[i] + "\n" + b[i]);
    out.AsStd() = std::move(munged);
}

void CStringHelper::UnmungeStringArrays(const CStringArray& munged, CStringArray& a, CStringArray& b) {
    Texts before, after;
    for (const CString& text : munged) {
        const std::string_view whole = text;
        const std::size_t end = std::min(whole.find('\n'), whole.size());
        before.emplace_back(whole.substr(0, end));
        after.emplace_back(whole.substr(std::min(end + 1, whole.size())));
    }
    a.AsStd() = std::move(before);
    b.AsStd() = std::move(after);
}

void CStringHelper::PrependString(CStringArray& texts, std::string_view text) {
    const std::string prefix(text);
    for (CString& element : texts) element.Insert(0, prefix);
}

void CStringHelper::CopyStringMap(const CMapStringToString& source, CMapStringToString& target) {
    for (const auto& [key, value] : source) target.SetAt(key, value);
}
