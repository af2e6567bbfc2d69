#include "tools/qv/report/ReportAssets.h"

#include "tools/qv/report/FileTableScript.h"
#include "tools/qv/report/MediaStyles.h"
#include "tools/qv/report/ReportScript.h"
#include "tools/qv/report/ReportStyles.h"
#include "tools/qv/report/TableStyles.h"

namespace qv::tool {

std::span<const ReportAsset> ReportAssets() {
    static constexpr ReportAsset kAssets[] = {{"report.css", kReportStyles},
                                              {"tables.css", kTableStyles},
                                              {"media.css", kMediaStyles},
                                              {"file-table.js", kFileTableScript},
                                              {"report.js", kReportScript}};
    return kAssets;
}

}  // namespace qv::tool
