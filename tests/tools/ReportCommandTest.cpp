#include <gtest/gtest.h>

#include "platform/Path.h"
#include "qvcommon/HtmlWriter.h"
#include "qvcommon/StringHelper.h"
#include "qvcommon/framework/Utf8.h"
#include "tests/support/TempFolder.h"
#include "tests/support/Tool.h"

namespace {

namespace fs = std::filesystem;

fs::path FromUtf8(const std::string& text) {
    return std::u8string(text.begin(), text.end());
}

// The files that the links in a part of a page lead to, as paths from the page.
std::vector<std::string> LinkedFiles(const std::string& html) {
    const CHtmlDocument page(html);
    std::vector<std::string> files;
    for (int i = 0; i < page.GetElementCount(); ++i) {
        const std::string address = page.GetAddress(i, "href").AsStd();
        if (page.GetTag(i) == "a" && !address.starts_with('#'))
            files.push_back(CStringHelper::UnEscapeUrl(address).AsStd());
    }
    return files;
}

// What is between two texts of a page.
std::string Part(const std::string& page, const std::string& begin, const std::string& end) {
    const std::size_t at = page.find(begin);
    return at == page.npos ? "" : page.substr(at, page.find(end, at) - at);
}

std::string Sections(const std::string& page) {
    return Part(page, "id=\"folders\"", "</main>");
}

class ReportCommand : public testing::Test {
protected:
    void Make(const std::string& name) const {
        const fs::path path = m_folder.Native() / FromUtf8(name);
        fs::create_directories(path.parent_path());
        std::ofstream(path) << "12345";
    }
    std::string Report(const CStringArray& more = {}) const {
        CStringArray arguments{"report", m_folder / "in", "-o", m_folder / "out"};
        arguments.Append(more);
        EXPECT_EQ(ToolStatus(arguments), 0);
        return m_folder.Read("out/index.html");
    }

    TempFolder m_folder;
};

TEST_F(ReportCommand, LinksEveryFileInOrder) {
    // Two letters of western code pages, if this one has them.
    const bool isWestern = !qv::platform::HasDriveLetters() || QvToUtf8(QvFromUtf8("\xC3\xA0")) == "\xC3\xA0";
    const std::string letters = isWestern ? "\xC3\xA0\xC3\xA9" : "xx", odd = "b #%&'+;=@" + letters + ".txt";
    for (const std::string name :
         {"in/C.txt", "in/a.txt", "in/Sub/x.PNG", "in/Sub/deep/y", "in/sibling/z", "in/.git/config"})
        Make(name);
    Make("in/" + odd);
    const std::string page = Report({"--title", "T&T"});
    const std::vector<std::string> files = LinkedFiles(Sections(page));
    EXPECT_EQ(files, (std::vector<std::string>{"../in/a.txt", "../in/" + odd, "../in/C.txt", "../in/sibling/z",
                                               "../in/Sub/x.PNG", "../in/Sub/deep/y"}));
    for (const std::string& file : files) EXPECT_TRUE(fs::exists(m_folder.Native("out") / FromUtf8(file))) << file;
    // CBF53A1C is the checksum of "12345".
    const std::vector<std::string> parts = {"<title>T&amp;T</title>",
                                            "b #%&amp;'+;=@" + letters + ".txt</a>",
                                            "6 files in 4 folders &middot; 30 bytes (30 bytes)",
                                            "<td>CBF53A1C\n",
                                            "#left-out\">1 left out<",
                                            "<td>.git<td>"};
    for (const std::string& part : parts) EXPECT_NE(page.find(part), page.npos) << part;
    for (const char* const asset : {"report.css", "report.js", "qvcommon.css", "TreeMenu.js", "open.gif"})
        EXPECT_TRUE(fs::exists(m_folder.Native("out/report-files") / asset)) << asset;
}

TEST_F(ReportCommand, BeginsWithTheLargestAndLatestFiles) {
    for (const auto& [name, size, day] :
         {std::tuple{"a", 3000, 2}, {"sub/b", 9000, 3}, {"c.txt", 3000, 1}, {"d.txt", 0, 70}}) {
        Make(std::string("in/") + name);
        const fs::path path = m_folder.Native("in") / name;
        fs::resize_file(path, static_cast<std::uintmax_t>(size));
        fs::last_write_time(path, fs::file_time_type::clock::now() - std::chrono::hours(24 * day));
    }
    fs::last_write_time(m_folder.Native("in/d.txt"), fs::file_time_type::clock::now() + std::chrono::hours(24 * 365));
    const std::string page = Report();
    const std::string largest = Part(page, "Largest files", "</table>"),
                      latest = Part(page, "Latest files", "</table>");
    EXPECT_EQ(LinkedFiles(largest), (std::vector<std::string>{"../in/sub/b", "../in/a", "../in/c.txt", "../in/d.txt"}));
    EXPECT_EQ(LinkedFiles(latest), (std::vector<std::string>{"../in/d.txt", "../in/c.txt", "../in/a", "../in/sub/b"}));
    EXPECT_NE(Part(page, "Largest folders", "</table>").find("sub</a><td>1<td>8.8 KB"), page.npos);
    for (const char* const chart : {"Size by kind", "Size by folder", "Files by the day of their last change"})
        EXPECT_NE(page.find(std::string(">") + chart + "<"), page.npos) << chart;
    EXPECT_EQ(Part(page, "Files by the day", "</svg>").find("2027"), page.npos);  // a time in the future is left out
    EXPECT_NE(page.find("<td data-v=9000>8.8 KB<td data-v="), page.npos);
}

TEST_F(ReportCommand, ExcludesOwnOutput) {
    for (const std::string folder : {"in", "other"})
        for (int times = 0; times < 2; ++times) {
            Make(folder + "/a");
            const std::string output = folder == "in" ? "in" : "other/report";
            ASSERT_EQ(ToolStatus({"report", m_folder / folder, "-o", m_folder / output}), 0);
            EXPECT_EQ(LinkedFiles(Sections(m_folder.Read(output + "/index.html"))).size(), 1u) << output;
        }
}

}  // namespace
