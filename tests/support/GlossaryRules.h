#pragma once

/// @file The rules by which a glossary's terms are marked, applied term after term. Slow and plain, to compare with.

#include <algorithm>
#include <vector>

#include "qvcommon/HtmlWriter.h"
#include "qvcommon/StringHelper.h"

namespace qv::test {

struct WholeWord : CHtmlWriter {
    using CHtmlWriter::IsWholeWord;
};

struct TermHit {
    int begin, end, term;
};

inline bool IsTaken(const std::vector<TermHit>& hits, int position) {
    return std::any_of(hits.begin(), hits.end(),
                       [&](const TermHit& hit) { return hit.begin <= position && position <= hit.end; });
}

inline std::vector<TermHit> FindTermByTerm(std::string_view text, const CStringArray& terms) {
    std::vector<TermHit> hits;
    for (int term = 0; term < terms.GetSize(); ++term) {
        const int length = terms[term].GetLength();
        int at = length > 0 ? CStringHelper::FindNoCase(text, terms[term], 0) : -1;
        for (; at >= 0; at = CStringHelper::FindNoCase(text, terms[term], at + 1))
            if (WholeWord::IsWholeWord(text, at, length) && !IsTaken(hits, at)) hits.push_back({at, at + length, term});
    }
    std::sort(hits.begin(), hits.end(), [](const TermHit& a, const TermHit& b) { return a.begin < b.begin; });
    return hits;
}

/// Only for texts whose characters have the same length in either case.
inline CString MarkTermByTerm(std::string_view text, const CStringArray& terms, const CStringArray& explanations) {
    CString out;
    int written = 0;
    for (const TermHit& hit : FindTermByTerm(text, terms)) {
        const auto part = [&](int from, int to) {
            return text.substr(static_cast<std::size_t>(from), static_cast<std::size_t>(std::max(to - from, 0)));
        };
        out += CHtmlWriter::Clean(part(written, hit.begin));
        out += "<span class=\"Glossary\" ";
        out +=
            CHtmlWriter::GetPopupCalls("<P>" + CHtmlWriter::CleanScriptParameter(explanations[hit.term], 0) + "</P>");
        out += ">" + CHtmlWriter::Clean(part(hit.begin, hit.end)) + "</span>";
        written = hit.end;
    }
    return out + CHtmlWriter::Clean(text.substr(static_cast<std::size_t>(written)));
}

}  // namespace qv::test
