#include "qvcommon/HistoryMgr.h"

#include <gtest/gtest.h>

namespace {

class History : public CHistoryMgr {
public:
    void Visit(std::initializer_list<const char*> urls) {
        for (const char* const url : urls) UpdateHistory(url);
    }
    // The pages from the newest to the oldest, the present one in brackets.
    std::string Pages() {
        std::string pages;
        const CString current = GetCurrentUrl();
        choice = -1;
        GetForwardMenuUrl({}, nullptr);
        for (int i = offered.GetSize() - 1; i >= 0; --i) pages += offered[i].AsStd();
        pages += "[" + current.AsStd() + "]";
        GetBackMenuUrl({}, nullptr);
        for (const CString& title : offered) pages += title.AsStd();
        return pages;
    }

    int choice = -1;
    CStringArray offered;

protected:
    int ChooseFromMenu(const CStringArray& texts, QvPoint, HWND) override {
        offered = texts;
        return choice;
    }
    CString GetBackMenuUrl(QvPoint point, HWND window) override {
        offered.RemoveAll();
        return CHistoryMgr::GetBackMenuUrl(point, window);
    }
    CString GetForwardMenuUrl(QvPoint point, HWND window) override {
        offered.RemoveAll();
        return CHistoryMgr::GetForwardMenuUrl(point, window);
    }

public:
    CString Back(int item) { return choice = item, GetBackMenuUrl({1, 2}, nullptr); }
};

TEST(HistoryMgr, MovesWhenThePageIsShown) {
    History history;
    EXPECT_EQ(history.HasCurrentUrl() + history.HasBackUrl() + history.HasForwardUrl(), 0);
    EXPECT_EQ(history.GetBackUrl() + history.GetForwardUrl() + history.GetCurrentUrl(), "");
    history.Visit({"A", "B", "C", "C"});
    EXPECT_EQ(history.Pages(), "[C]BA");
    EXPECT_EQ(history.GetBackUrl(), "B");
    EXPECT_EQ(history.Pages(), "[C]BA");
    history.Visit({"B"});
    EXPECT_EQ(history.Pages(), "C[B]A");
    EXPECT_EQ(history.GetForwardUrl(), "C");
    history.Visit({"D"});  // another page came
    EXPECT_EQ(history.Pages(), "[D]BA");
    EXPECT_EQ(history.Back(1), "A");
    history.Visit({"A"});
    EXPECT_EQ(history.Pages(), "DB[A]");
    EXPECT_EQ(history.HasBackUrl(), 0);
    history.Visit({"D"});  // seen before: nothing is lost
    EXPECT_EQ(history.Pages(), "[D]BA");
    EXPECT_EQ(history.Back(7), "");
    history.Reset();
    EXPECT_EQ(history.Pages(), "[]");
}

TEST(HistoryMgr, KeepsTheNewest) {
    History history;
    history.SetMaxLinks(2);
    history.Visit({"A", "B", "C"});
    EXPECT_EQ(history.Pages(), "[C]B");
    history.SetMaxLinks(5);
    history.Visit({"D", "E", "F"});
    history.GetBackUrl();
    history.Visit({"E"});
    history.SetMaxLinks(1);
    EXPECT_EQ(history.Pages(), "[F]");
    history.SetMaxLinks(0);
    EXPECT_EQ(history.HasCurrentUrl(), 0);
}

TEST(HistoryMgr, MayVisitAgain) {
    History history;
    history.SetAlwaysNew(2);  // only 1 is on
    history.Visit({"A", "B", "A"});
    EXPECT_EQ(history.Pages(), "B[A]");
    history.SetAlwaysNew(1);
    history.Visit({"B", "A"});
    EXPECT_EQ(history.Pages(), "[A]BA");
    history.GetBackUrl();
    history.Visit({"B", "A"});
    EXPECT_EQ(history.Pages(), "[A]BA");
    history.UpdateHistory("T", "Title");
    history.Visit({"U"});
    EXPECT_EQ(history.Pages(), "[U]TitleABA");
}

}  // namespace
