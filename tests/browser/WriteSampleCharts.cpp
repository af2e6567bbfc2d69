// Writes the sample charts into a folder, for the tests that drive a browser: each as a file, in two sizes, and all of them
// in one page.

#include <cstdio>

#include "qvcommon/FileUtils.h"
#include "tests/support/SampleCharts.h"

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fputs("usage: sample_charts FOLDER\n", stderr);
        return 2;
    }
    const CString folder = CString(argv[1]) + '/';
    CString page(
        "<!DOCTYPE html><html lang=\"en\"><meta name=\"viewport\" content=\"width=device-width\"><title>Charts</title>"
        "<body><p id=\"outside\">Outside</p>");
    for (const int width : {720, 320})
        for (const SampleChart& chart : SampleCharts(width, width == 720 ? 400 : 280)) {
            CFileUtils::SaveFile(folder + chart.name + '-' + std::to_string(width) + ".svg", chart.svg);
            if (width == 720) page += chart.svg;
        }
    CFileUtils::SaveFile(folder + "charts.html", page);
    return 0;
}
