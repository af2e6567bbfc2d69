#pragma once

#include <cstddef>
#include <vector>

#include "qvcommon/framework/LeftOut.h"

namespace qv::tool {

/// Names on standard error what a walk leaves out, as it comes, and counts it.
class LeftOuts : public ILeftOut {
public:
    void OnLeftOut(const QvLeftOut& entry) override;

    std::size_t Count() const { return m_count; }
    /// @throws Failed when anything was left out.
    void Check() const;

private:
    std::size_t m_count = 0;
};

}  // namespace qv::tool
