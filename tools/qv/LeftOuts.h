#pragma once

#include <cstddef>
#include <vector>

#include "qvcommon/framework/LeftOut.h"

namespace qv::tool {

/// Prints what a walk leaves out to standard error, as it is reported, and counts it.
class LeftOuts : public ILeftOut {
public:
    void OnLeftOut(const QvLeftOut& entry) override;

    std::size_t Count() const { return m_count; }
    /// @throws CommandError if anything was left out.
    void Check() const;

private:
    std::size_t m_count = 0;
};

}  // namespace qv::tool
