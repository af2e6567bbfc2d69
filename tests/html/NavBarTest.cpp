#include "qvcommon/NavBar.h"

#include <gtest/gtest.h>

#include "tests/support/Raised.h"
#include "tests/support/ScopedProfile.h"

namespace {

class NavBars : public testing::Test {
protected:
    // The texts of the bar's rows, the current one in brackets.
    static CString Rows(CNavBar& bar) {
        CHtmlWriter page;
        bar.SetAllowRollup(0);
        bar.GenerateHtml(page);
        CString html = page.GetHtml().Mid(page.GetHtml().Find("<TBODY><TR><TD"));
        for (const auto& [find, replacement] : {std::pair{"<TD class=\"clsSelected\">", "["},
                                                {"<TR>", ""},
                                                {"<TD>", ""},
                                                {"</TD>", " "},
                                                {"<TBODY>", ""}})
            html.Replace(find, replacement);
        return CHtmlWriter::HtmlToPlainText(html);
    }

    TempFolder m_folder;
    ScopedProfile m_app{m_folder.Native().string()};
    // Profiles that are no files outlive the test.
    const CString m_section = m_folder.Native().parent_path().filename().string();
};

TEST_F(NavBars, SelectOptionByIndex) {
    COptionNavBar bar;
    bar.SetOptions({"One", "Two", "two"});
    EXPECT_EQ(bar.ProcessCommand("2"), 0);
    bar.SetCommand("Go");
    using Row = std::tuple<const char*, int, int, const char*>;
    for (const auto& [command, result, option, text] :
         {Row{"Go1", 1, 1, "Two"}, Row{"go2", 0, 1, "Two"}, Row{"Go", 1, 0, "One"}, Row{"Go9", 1, 9, ""},
          Row{"Go-1", 1, -1, ""}}) {
        EXPECT_EQ(bar.ProcessCommand(command), result) << command;
        EXPECT_EQ(bar.GetOption(), option);
        EXPECT_EQ(bar.GetSubHeading(), text);
    }
    EXPECT_EQ(bar.SetOptionByText("TWO"), 1);
    EXPECT_EQ(bar.GetOption(), 1);
    EXPECT_EQ(bar.SetOptionByText("Three"), 0);
    EXPECT_EQ(bar.GetOption(), -1);
}

TEST_F(NavBars, StringOptionsAreKeptInTheProfile) {
    CStringOptionNavBar bar(m_section, "Option"), other(m_section, "Option"), own("", "");
    for (CStringOptionNavBar* const b : {&bar, &other, &own}) {
        b->SetOptions({"Red", "Blue"});
        b->SetCommand("c:");
    }
    EXPECT_EQ(bar.ProcessCommand("c:bLUE"), 1);
    EXPECT_EQ(bar.ProcessCommand("c:Green"), 0);
    EXPECT_EQ(other.GetOption(), "Blue");
    EXPECT_EQ(Rows(other), "Red [Blue");
    EXPECT_EQ(Rows(own), "Red Blue");
    own.SetOption("Red");
    EXPECT_EQ(own.GetOption(), "Red");
    bar.SetOption("Gone");
    EXPECT_EQ(other.GetSubHeading(), "");
    EXPECT_EQ(Rows(other), "Red Blue");
    EXPECT_EQ(m_app.GetProfileString(m_section, "Option", "none"), "");
}

TEST_F(NavBars, SelectGroupByKey) {
    CGroupNavBar bar(m_section, "Group");
    bar.SetGroups({"Mine", "Yours"}, {"k1", "K1"});
    EXPECT_TRUE(Raised<CInvalidArgException>([&] { bar.SetGroups({"a"}, {}); }));
    bar.SetCommand("g=");
    EXPECT_EQ(bar.ProcessCommand("g=K1"), 1);
    EXPECT_EQ(bar.ProcessCommand("g=k2"), 0);
    EXPECT_EQ(CGroupNavBar(m_section, "Group").GetOption(), "K1");
    EXPECT_EQ(bar.GetGroup(), "Yours");
    EXPECT_EQ(Rows(bar), "Mine [Yours");
    m_app.WriteProfileString(m_section, "Group", "gone");
    EXPECT_EQ(Rows(bar), "Mine Yours");
    EXPECT_EQ(m_app.GetProfileString(m_section, "Group", "none"), "");
}

struct Recent : CMruNavBar {
    using CMruNavBar::CMruNavBar;
    CString GetDisplayText(const CString& id) override { return id == "hidden" ? CString() : "<" + id + ">"; }
};

TEST_F(NavBars, ListMostRecentlyUsedFirst) {
    Recent bar(3, m_section, "Mru");
    using Row = std::tuple<const char*, const char*, const char*>;
    for (const auto& [id, stored, rows] : {Row{"a", "a,,", "[<a>"}, Row{"b", "b,a,", "[<b> <a>"},
                                           Row{"a", "a,b,", "[<a> <b>"}, Row{"hidden", "hidden,a,b", "<a> <b>"},
                                           Row{"A", "A,hidden,a", "[<A> <a>"}, Row{"a", "a,A,hidden", "[<a> <A>"}}) {
        bar.AddId(id);
        EXPECT_EQ(m_app.GetProfileString(m_section, "Mru"), stored);
        EXPECT_EQ(Rows(bar), rows);
    }
    EXPECT_EQ(bar.GetSubHeading(), "<a>");
    Recent one(1, m_section, "Mru"), none(-1, "", "");
    one.AddId("x");
    none.AddId("y");
    EXPECT_EQ(m_app.GetProfileString(m_section, "Mru"), "x");
    EXPECT_EQ(Rows(none), "[<y>");
    EXPECT_EQ(Rows(bar), "<x>");
}

}  // namespace
