#include "tools/qv/report/Overview.h"

#include <algorithm>
#include <chrono>
#include <map>

#include "qvcommon/framework/DateTime.h"
#include "tools/qv/report/FileRow.h"

namespace qv::tool {
namespace {

using std::chrono::days;
using std::chrono::months;
using std::chrono::sys_days;
using std::chrono::year_month_day;
using std::chrono::years;

/// With more periods, the next longer unit is used; of years, only the latest are kept.
constexpr std::ptrdiff_t kMostPeriods = 62;

std::vector<FileOfFolder> AllFiles(const std::vector<FolderEntry>& folders) {
    std::vector<FileOfFolder> all;
    all.reserve(folders.front().overall.files);
    for (std::size_t i = 0; i < folders.size(); ++i)
        for (const FileEntry& file : folders[i].files)
            if (file.link == LinkKind::None) all.push_back({i, &file});
    return all;
}

/// Returns the files with the greatest values; equal ones in tree order.
template <class Value>
std::vector<FileOfFolder> Greatest(const std::vector<FileOfFolder>& files, Value FileEntry::*value) {
    std::vector<FileOfFolder> greatest(std::min(files.size(), Overview::kMostFiles));
    std::ranges::partial_sort_copy(files, greatest, [value](const FileOfFolder& a, const FileOfFolder& b) {
        if (a.file->*value != b.file->*value) return a.file->*value > b.file->*value;
        return a.folder != b.folder ? a.folder < b.folder : a.file < b.file;
    });
    return greatest;
}

std::vector<std::size_t> LargestFolders(const std::vector<FolderEntry>& folders) {
    std::vector<std::size_t> withFiles;
    for (std::size_t i = 0; i < folders.size(); ++i)
        if (folders[i].own.files) withFiles.push_back(i);
    std::vector<std::size_t> largest(std::min(withFiles.size(), Overview::kMostFiles));
    std::ranges::partial_sort_copy(withFiles, largest, [&folders](std::size_t a, std::size_t b) {
        return folders[a].own.bytes != folders[b].own.bytes ? folders[a].own.bytes > folders[b].own.bytes : a < b;
    });
    return largest;
}

std::vector<KindTotals> Kinds(const std::vector<FolderEntry>& folders) {
    std::map<std::string_view, KindTotals> byName;
    for (const FolderEntry& folder : folders)
        for (const FileEntry& file : folder.files) {
            const FileKind& kind = KindOf(file);
            byName.try_emplace(kind.name, KindTotals{&kind, {}}).first->second.totals.Add({1, file.size});
        }
    std::vector<KindTotals> kinds;
    kinds.reserve(byName.size());
    for (const auto& [name, kind] : byName) kinds.push_back(kind);
    return kinds;
}

/// A period's name, the first day of the one that contains a day, and the next one.
struct Calendar {
    const char* name;
    year_month_day (*first)(year_month_day);
    year_month_day (*next)(year_month_day);
    year_month_day (*before)(year_month_day, int);
};

constexpr Calendar kCalendars[] = {
    {"day", [](year_month_day d) { return d; }, [](year_month_day d) { return year_month_day(sys_days(d) + days(1)); },
     [](year_month_day d, int n) { return year_month_day(sys_days(d) - days(n)); }},
    {"month", [](year_month_day d) { return d.year() / d.month() / 1; }, [](year_month_day d) { return d + months(1); },
     [](year_month_day d, int n) { return d - months(n); }},
    {"year", [](year_month_day d) { return d.year() / 1 / 1; }, [](year_month_day d) { return d + years(1); },
     [](year_month_day d, int n) { return d - years(n); }},
};

/// Returns the days with changes and their counts.
std::map<sys_days, std::size_t> Days(const std::vector<FileOfFolder>& files, std::int64_t now) {
    std::map<std::int64_t, std::size_t> quarters;  // fewer than files, so fewer times are converted
    constexpr std::int64_t kQuarter = 900;         // seconds; days begin on a multiple in every time zone
    for (const FileOfFolder& entry : files)
        if (entry.file->modified <= now)
            ++quarters[entry.file->modified - (entry.file->modified % kQuarter + kQuarter) % kQuarter];
    std::map<sys_days, std::size_t> counts;
    for (const auto& [time, count] : quarters) {
        const COleDateTime date(time);
        if (date.GetStatus() != COleDateTime::valid) continue;
        counts[std::chrono::year(date.GetYear()) / date.GetMonth() / date.GetDay()] += count;
    }
    return counts;
}

void CountChanges(Overview& overview, const std::map<sys_days, std::size_t>& counts) {
    if (counts.empty()) return;
    const year_month_day latest = counts.rbegin()->first;
    for (const Calendar& calendar : kCalendars) {
        const year_month_day end = calendar.first(latest), limit = calendar.before(end, kMostPeriods - 1);
        const bool isLast = &calendar == std::end(kCalendars) - 1;
        if (!isLast && counts.begin()->first < sys_days(limit)) continue;
        const auto begin = counts.lower_bound(sys_days(limit));
        overview.period = calendar.name;
        auto at = begin;
        for (year_month_day first = calendar.first(begin->first); first <= end; first = calendar.next(first)) {
            std::size_t count = 0;
            for (; at != counts.end() && calendar.first(at->first) == first; ++at) count += at->second;
            overview.changes.push_back(
                {int(first.year()), int(unsigned(first.month())), int(unsigned(first.day())), count});
        }
        return;
    }
}

}  // namespace

Overview MakeOverview(const std::vector<FolderEntry>& folders, std::int64_t now) {
    const std::vector<FileOfFolder> files = AllFiles(folders);
    Overview overview;
    overview.kinds = Kinds(folders);
    overview.folders = LargestFolders(folders);
    overview.largest = Greatest(files, &FileEntry::size);
    overview.latest = Greatest(files, &FileEntry::modified);
    CountChanges(overview, Days(files, now));
    return overview;
}

}  // namespace qv::tool
