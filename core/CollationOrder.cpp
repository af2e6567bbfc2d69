#include "core/CollationOrder.h"

#include <algorithm>
#include <clocale>
#include <cstring>
#include <memory>
#include <mutex>
#include <numeric>
#include <optional>
#include <string>

#include "core/CollationGuess.h"
#include "platform/Text.h"

namespace qv {
namespace {

using Texts = std::span<const CString* const>;
using Order = std::vector<std::uint32_t>;

// Bytes to sort a text by: the first eight as a number, which settles most comparisons, and where they lie.
struct SortKey {
    std::uint64_t head;
    std::size_t start, size;
    std::uint32_t index;
};

std::uint64_t Head(std::string_view key) {
    std::uint64_t head = 0;
    for (std::size_t i = 0; i < 8; ++i) head = head << 8 | (i < key.size() ? static_cast<unsigned char>(key[i]) : 0u);
    return head;
}

class SortKeys {
public:
    // `append` appends a text's key to a string.
    template <class Append>
    SortKeys(Texts texts, Append append) {
        m_keys.reserve(texts.size());
        for (const CString* text : texts) {
            const std::size_t start = m_bytes.size();
            append(*text, m_bytes);
            const std::uint64_t head = Head(std::string_view(m_bytes).substr(start));
            m_keys.push_back({head, start, m_bytes.size() - start, static_cast<std::uint32_t>(m_keys.size())});
        }
    }

    // `settle` compares the texts of two indexes whose keys are equal.
    template <class Settle>
    Order Sorted(bool descending, Settle settle) {
        std::sort(m_keys.begin(), m_keys.end(), [&](const SortKey& a, const SortKey& b) {
            int order = Compare(a, b);
            if (order == 0) order = settle(a.index, b.index);
            return order == 0 ? a.index < b.index : (order < 0) != descending;
        });
        Order order(m_keys.size());
        std::transform(m_keys.begin(), m_keys.end(), order.begin(), [](const SortKey& key) { return key.index; });
        return order;
    }

private:
    int Compare(const SortKey& a, const SortKey& b) const {
        if (a.head != b.head) return a.head < b.head ? -1 : 1;
        return Bytes(a).compare(Bytes(b));
    }

    std::string_view Bytes(const SortKey& key) const { return {m_bytes.data() + key.start, key.size}; }

    std::string m_bytes;
    std::vector<SortKey> m_keys;
};

// An order that was found by other means, checked neighbour by neighbour by the collation itself, and what stands wrong
// merged. So the result is the collation's, whatever the means are worth.
class CheckedOrder {
public:
    CheckedOrder(Texts texts, bool descending)
        : m_texts(texts),
          m_descending(descending),
          m_plain(platform::CollatesAsItIs() && std::none_of(texts.begin(), texts.end(), HasZero)) {}

    static constexpr std::size_t kAnyRuns = static_cast<std::size_t>(-1);

    // Nothing when more than `most` runs would have to be merged.
    std::optional<Order> Check(Order order, std::size_t most) {
        m_order = std::move(order);
        FindRuns(most);
        if (m_runs.size() > most) return std::nullopt;
        while (m_runs.size() > 2) MergePairs();
        return std::move(m_order);
    }

    int Collate(std::uint32_t a, std::uint32_t b) const {
        return m_plain ? std::strcoll(m_texts[a]->c_str(), m_texts[b]->c_str())
                       : platform::Collate(*m_texts[a], *m_texts[b]);
    }

private:
    static bool HasZero(const CString* text) { return text->find('\0') != CString::npos; }

    bool Before(std::uint32_t a, std::uint32_t b) const {
        const int order = Collate(a, b);
        return order == 0 ? a < b : (order < 0) != m_descending;
    }

    // Where the order's ascending parts begin, and its end.
    void FindRuns(std::size_t most) {
        m_runs = {0};
        for (std::size_t i = 1; i < m_order.size() && m_runs.size() <= most; ++i)
            if (!Before(m_order[i - 1], m_order[i])) m_runs.push_back(i);
        m_runs.push_back(m_order.size());
    }

    void MergePairs() {
        const auto at = [this](std::size_t run) { return m_order.begin() + static_cast<std::ptrdiff_t>(m_runs[run]); };
        std::vector<std::size_t> merged;
        for (std::size_t run = 0; run + 1 < m_runs.size(); run += 2) {
            merged.push_back(m_runs[run]);
            if (run + 2 < m_runs.size())
                std::inplace_merge(at(run), at(run + 1), at(run + 2), [this](auto a, auto b) { return Before(a, b); });
        }
        merged.push_back(m_order.size());
        m_runs = std::move(merged);
    }

    Texts m_texts;
    bool m_descending, m_plain;
    Order m_order;
    std::vector<std::size_t> m_runs;
};

// Kept for the locale that was asked for last. One that does not fit would only be a bad guess.
std::shared_ptr<const CollationGuess> CurrentGuess() {
    static std::mutex mutex;
    static std::string known;
    static std::shared_ptr<const CollationGuess> guess;
    const std::string locale = std::setlocale(LC_COLLATE, nullptr);
    const std::scoped_lock lock(mutex);
    if (!guess || known != locale || guess->Page() != platform::CurrentCodePage()) {
        guess = std::make_shared<const CollationGuess>();
        known = locale;
    }
    return guess;
}

Order GuessedOrder(Texts texts, bool descending, const CheckedOrder& checked) {
    const std::shared_ptr<const CollationGuess> guess = CurrentGuess();
    SortKeys ranks(texts, [&](const CString& text, std::string& bytes) { guess->Append(text, bytes); });
    return ranks.Sorted(descending, [&](auto a, auto b) { return checked.Collate(a, b); });
}

Order KeyOrder(Texts texts, bool descending) {
    SortKeys keys(texts, [](const CString& text, std::string& bytes) { platform::AppendCollationKey(text, bytes); });
    return keys.Sorted(descending, [](std::uint32_t, std::uint32_t) { return 0; });
}

Order OldOrder(std::size_t count) {
    Order order(count);
    std::iota(order.begin(), order.end(), 0u);
    return order;
}

// Making the guess costs more than it saves below the one, making keys below the other.
constexpr std::size_t kWorthGuessing = 200, kWorthKeys = 8;
constexpr std::size_t kMostRunsOfGuess = 32;

}  // namespace

Order CollationOrder(Texts texts, bool descending) {
    CheckedOrder checked(texts, descending);
    if (texts.size() >= kWorthGuessing)
        if (auto order = checked.Check(GuessedOrder(texts, descending, checked), kMostRunsOfGuess))
            return std::move(*order);
    Order start = texts.size() < kWorthKeys ? OldOrder(texts.size()) : KeyOrder(texts, descending);
    return *checked.Check(std::move(start), CheckedOrder::kAnyRuns);
}

}  // namespace qv
