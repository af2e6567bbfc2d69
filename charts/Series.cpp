#include "charts/Series.h"

#include <algorithm>

#include "charts/Numbers.h"

namespace qv::charts {

CString ValueText(double value) {
    return IsMissing(value) ? CString() : CString(Shortest(value));
}

Table Summary(const std::vector<Series>& all) {
    Table table{{"Series", "Values", "Minimum", "Maximum"}, {}};
    for (const Series& series : all) {
        double least = kMissing, greatest = kMissing;
        std::size_t count = 0;
        for (const double value : series.y) {
            if (IsMissing(value)) continue;
            least = count ? std::min(least, value) : value;
            greatest = count ? std::max(greatest, value) : value;
            ++count;
        }
        table.rows.push_back({series.name, CString(std::to_string(count)), ValueText(least), ValueText(greatest)});
    }
    return table;
}

}  // namespace qv::charts
