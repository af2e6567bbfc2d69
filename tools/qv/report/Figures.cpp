#include "tools/qv/report/Figures.h"

#include "qvcommon/StringHelper.h"
#include "qvcommon/framework/DateTime.h"

namespace qv::tool {

CString Number(std::uintmax_t value) {
    CString text;
    text.Format("%d", value);
    for (int i = text.GetLength() - 3; i > 0; i -= 3) text.Insert(i, "\xE2\x80\xAF");  // narrow no-break space
    return text;
}

CString Counted(std::uintmax_t count, const char* one) {
    return Number(count) + " " + one + (count == 1 ? "" : "s");
}

CString Size(std::uintmax_t bytes) {
    if (bytes < 1024) return Counted(bytes, "byte");
    CDoubleArray thresholds;
    CStringArray units;
    double threshold = 1;
    for (const char* const unit : {"KB", "MB", "GB", "TB", "PB"}) {
        thresholds.Add(threshold *= 1024);
        units.Add(unit);
    }
    return CStringHelper::RebaseUnits(static_cast<double>(bytes), "bytes", thresholds, units, 1, -2);
}

CString Checksum(unsigned long checksum) {
    CString text;
    text.Format("%08X", checksum);
    return text;
}

CString Date(std::int64_t time) {
    return COleDateTime(time).Format("%Y-%m-%d %H:%M");
}

}  // namespace qv::tool
