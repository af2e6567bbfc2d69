#include "files/ListingsAhead.h"

#include "framework/FindRecord.h"

namespace qv {
namespace {

/// A shorter walk ends before a thread would help.
constexpr int kFewListings = 8;
constexpr std::size_t kMostExpected = 64;

}  // namespace

ListingsAhead::ListingsAhead(const CString& path) : m_outermost(path), m_root(SearchRoot(path)) {}

/// A path below the outermost folder has the same position below the absolute path of that folder.
CString ListingsAhead::RootOf(const CString& path) const {
    const std::string_view whole = path, outermost = m_outermost;
    return whole.starts_with(outermost) ? m_root + whole.substr(outermost.size()) : SearchRoot(path);
}

bool ListingsAhead::Expect(const CString& path, const Rules& rules) {
    if (m_executor.Threads() == 0 || m_taken < kFewListings || m_expected.size() >= kMostExpected) return false;
    auto listing = m_executor.Start([this, path, rules] { return FolderListing(path, RootOf(path), false, *rules); });
    m_expected.insert_or_assign(path.AsStd(), Expected{rules, std::move(listing)});
    return true;
}

FolderListing ListingsAhead::Take(const CString& path, bool isOutermost, const Rules& rules) {
    ++m_taken;
    const auto found = m_expected.find(path.AsStd());
    if (found == m_expected.end()) return FolderListing(path, RootOf(path), isOutermost, *rules);
    Expected expected = std::move(found->second);
    m_expected.erase(found);
    // Rules changed during the walk apply from the next folder on.
    return expected.rules == rules ? expected.listing.Get() : FolderListing(path, RootOf(path), isOutermost, *rules);
}

}  // namespace qv
