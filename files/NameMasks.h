#pragma once

#include <algorithm>
#include <string_view>
#include <vector>

#include "platform/Wildcard.h"
#include "qvcommon/framework/Collections.h"

namespace qv {

/// A set of masks for names.
class NameMasks {
public:
    explicit NameMasks(const CStringArray& masks) {
        for (const CString& mask : masks) m_masks.emplace_back(mask);
    }

    bool Match(std::string_view name) const {
        return std::ranges::any_of(m_masks, [&](const platform::Wildcard& mask) { return mask.Matches(name); });
    }

private:
    std::vector<platform::Wildcard> m_masks;
};

}  // namespace qv
