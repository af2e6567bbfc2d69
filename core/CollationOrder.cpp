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
#include "core/Prefetch.h"
#include "core/SortKeys.h"
#include "platform/Text.h"

namespace qv {
namespace {

// Of whole zero-terminated strings.
using Texts = std::span<const std::string_view>;
using Order = std::vector<std::uint32_t>;

// Checks an order found by other means, neighbour by neighbour, with the collation itself, and merges the ascending
// runs. So the result is the collation's order, regardless of the quality of the input.
class CheckedOrder {
public:
    CheckedOrder(Texts texts, bool descending)
        : m_texts(texts),
          m_descending(descending),
          m_plain(platform::CollatesInCodePage() && std::none_of(texts.begin(), texts.end(), HasZero)) {}

    static constexpr std::size_t kAnyRuns = static_cast<std::size_t>(-1);

    // Returns nullopt if there are more than `most` runs to merge.
    std::optional<Order> Check(Order order, std::size_t most) {
        m_order = std::move(order);
        FindRuns(most);
        if (m_runs.size() > most) return std::nullopt;
        while (m_runs.size() > 2) MergePairs();
        return std::move(m_order);
    }

    int Collate(std::uint32_t a, std::uint32_t b) const {
        return m_plain ? platform::CollateStrings(m_texts[a].data(), m_texts[b].data())
                       : platform::Collate(m_texts[a], m_texts[b]);
    }

private:
    static bool HasZero(std::string_view text) { return text.find('\0') != text.npos; }

    bool Before(std::uint32_t a, std::uint32_t b) const {
        const int order = Collate(a, b);
        return order == 0 ? a < b : (order < 0) != m_descending;
    }

    // Finds the starts of the order's ascending runs, and its end.
    void FindRuns(std::size_t most) {
        m_runs = {0};
        for (std::size_t i = 1; i < m_order.size() && m_runs.size() <= most; ++i) {
            // Sorted texts are anywhere in memory, so they are prefetched some steps before they are compared.
            constexpr std::size_t near = 4, far = 16;
            if (i + far < m_order.size()) {
                Prefetch(&m_texts[m_order[i + far]]);
                Prefetch(m_texts[m_order[i + near]].data());
            }
            if (!Before(m_order[i - 1], m_order[i])) m_runs.push_back(i);
        }
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

// Cached for the last locale. An outdated one would only be a bad guess.
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

// `append` appends the key of a text to a string.
template <class Append>
SortKeys KeysOf(Texts texts, Append append) {
    std::size_t bytes = 0;
    for (const std::string_view text : texts) bytes += text.size();
    SortKeys keys(texts.size(), bytes);
    for (const std::string_view text : texts) keys.Add([&](std::string& key) { append(text, key); });
    return keys;
}

Order GuessedOrder(Texts texts, bool descending, const CheckedOrder& checked) {
    const std::shared_ptr<const CollationGuess> guess = CurrentGuess();
    SortKeys ranks = KeysOf(texts, [&](std::string_view text, std::string& key) { guess->Append(text, key); });
    return ranks.Sorted(descending, [&](auto a, auto b) { return checked.Collate(a, b); });
}

Order KeyOrder(Texts texts, bool descending) {
    SortKeys keys = KeysOf(texts, platform::AppendCollationKey);
    return keys.Sorted(descending, [](std::uint32_t, std::uint32_t) { return 0; });
}

Order OldOrder(std::size_t count) {
    Order order(count);
    std::iota(order.begin(), order.end(), 0u);
    return order;
}

// Below these sizes the guess, or keys, cost more than they save.
constexpr std::size_t kWorthGuessing = 200, kWorthKeys = 8;
constexpr std::size_t kMostRunsOfGuess = 32;

}  // namespace

Order CollationOrder(std::span<const CString* const> strings, bool descending) {
    std::vector<std::string_view> texts;
    texts.reserve(strings.size());
    for (const CString* string : strings) texts.push_back(*string);
    CheckedOrder checked(texts, descending);
    if (texts.size() >= kWorthGuessing)
        if (auto order = checked.Check(GuessedOrder(texts, descending, checked), kMostRunsOfGuess))
            return std::move(*order);
    Order start = texts.size() < kWorthKeys ? OldOrder(texts.size()) : KeyOrder(texts, descending);
    return *checked.Check(std::move(start), CheckedOrder::kAnyRuns);
}

}  // namespace qv
