#include "tools/qv/LeftOuts.h"

#include "tools/qv/Command.h"
#include "tools/qv/Progress.h"
#include "tools/qv/Visible.h"

namespace qv::tool {

void LeftOuts::OnLeftOut(const QvLeftOut& entry) {
    ++m_count;
    Complain(Native(entry.path) + ": " + entry.reason.AsStd());
}

void LeftOuts::Check() const {
    if (m_count > 0) throw CommandError(std::to_string(m_count) + (m_count == 1 ? " entry" : " entries") + " left out");
}

}  // namespace qv::tool
