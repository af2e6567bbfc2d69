#include <algorithm>
#include <cstdlib>
#include <utility>

#include "core/StandardTime.h"
#include "qvcommon/FileUtils.h"
#include "qvcommon/framework/DateTime.h"
#include "qvcommon/framework/FileFind.h"

namespace {

constexpr const char* kLongForm = "%b %d %Y, %H:%M:%S";

/// Returns the first matching entry; null times if none matches.
bool FindFirst(const char* pattern, QvFileTime& written) {
    CFileFind find;
    if (!find.FindFile(CString(pattern))) return false;
    find.FindNextFile();
    written = find.GetLastWriteTime();
    return true;
}

template <class Action>
void ForEachSubfolder(const char* pattern, Action action) {
    CFileFind find;
    for (BOOL more = find.FindFile(CString(pattern)); more;) {
        more = find.FindNextFile();
        if (find.IsDirectory() && !find.IsDots()) action(find);
    }
}

double NumberIn(const CString& name) {
    std::string text = name.AsStd();
    text.erase(0, std::min(text.find_first_of("0123456789"), text.size()));
    if (const std::size_t point = text.find('.'); point != text.npos)
        text.erase(std::remove(text.begin() + static_cast<std::ptrdiff_t>(point) + 1, text.end(), '.'), text.end());
    return std::atof(text.c_str());
}

}  // namespace

CString CFileUtils::GetDateModified(const char* pattern, const char* format) {
    QvFileTime written;
    return FindFirst(pattern, written) ? COleDateTime(written).Format(format) : CString();
}

CString CFileUtils::GetDateModified(const char* pattern) {
    return GetDateModified(pattern, kLongForm);
}

int CFileUtils::GetDateModified(const char* pattern, LONG& time) {
    QvFileTime written;
    if (!FindFirst(pattern, written)) return 0;
    const std::optional<std::int64_t> seconds = qv::StandardSeconds(written);
    if (!seconds || !std::in_range<LONG>(*seconds)) return 0;
    time = static_cast<LONG>(*seconds);
    return 1;
}

void CFileUtils::FindLastestSubdir(const char* pattern, CString& name, CString& date) {
    const COleDateTime earliest(1900, 1, 1, 1, 1, 1);
    auto latest = QvFileTime().Steps();
    ForEachSubfolder(pattern, [&](const CFileFind& find) {
        const QvFileTime time = find.GetCreationTime();  // has a finer resolution than the date
        const COleDateTime created(time);
        if (!(created > earliest) || time.Steps() <= latest) return;
        latest = time.Steps();
        name = find.GetFileName();
        date = created.Format(kLongForm);
    });
}

void CFileUtils::FindLastestSubdirByName(const char* pattern, CString& name) {
    double highest = -1;
    ForEachSubfolder(pattern, [&](const CFileFind& find) {
        const CString candidate = find.GetFileName();
        const double number = NumberIn(candidate);
        if (number > highest) highest = number, name = candidate;
    });
}
