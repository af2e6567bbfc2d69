// Writes a report of 1 GB to a file and prints the process's peak memory.

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>

#include "qvcommon/HtmlWriter.h"

namespace {

void WriteReport(CHtmlWriter& page) {
    constexpr std::size_t size = 1 << 30;
    page.OpenTag("html");
    page.AddTitle("Large report");
    page.OpenTag("body");
    const std::string row = "Region & product line <" + std::string(400, 'x') + ">";
    for (std::size_t written = 0; written < size; written += row.size()) page.AddParagraph(row);
    page.CloseTag("body");
    page.CloseTag("html");
    page.CommitFile();
}

// Returns the kernel's line with the name, such as "VmHWM:   9876 kB"; empty on systems without it.
std::string StatusLine(const std::string& name) {
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);)
        if (line.starts_with(name)) return line;
    return "";
}

}  // namespace

int main() {
    const std::filesystem::path path = std::filesystem::temp_directory_path() / "qv-report-memory.html";
    CHtmlWriter page;
    page.SetFilename(path.string().c_str());
    WriteReport(page);
    std::printf("%ju bytes written; %s (bound: 16384 kB)\n", std::filesystem::file_size(path),
                StatusLine("VmHWM").c_str());
    std::filesystem::remove(path);
}
