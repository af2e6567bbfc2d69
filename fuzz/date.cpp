// Parses dates from arbitrary text, and formats them with arbitrary formats. Runs in the environment's locale.

#include <clocale>
#include <cstdlib>
#include <string_view>

#include "qvcommon/framework/DateTime.h"

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    std::setlocale(LC_ALL, "");
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    COleDateTime date;
    if (!date.ParseDateTime(text)) return 0;
    COleDateTime again;
    if (!again.ParseDateTime(date.Format("%d %b %Y %H:%M:%S")) || again != date) std::abort();
    if (date.GetYear() < 100 || date.GetYear() > 9999) std::abort();
    date.Format(text);
    return 0;
}
