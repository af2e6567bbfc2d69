#include "qvcommon/HistoryMgr.h"

#include <gtest/gtest.h>

namespace {

class History : public CHistoryMgr {
public:
    /// Visits pages, and returns Pages().
    std::string After(std::initializer_list<const char*> urls) {
        for (const char* const url : urls) UpdateHistory(url);
        return Pages();
    }
    /// The pages from the newest to the oldest, the current one in brackets.
    std::string Pages() {
        std::string pages;
        const CString current = GetCurrentUrl();
        choice = -1;
        offered.RemoveAll();
        GetForwardMenuUrl({}, nullptr);
        for (int i = offered.GetSize() - 1; i >= 0; --i) pages += offered[i].AsStd();
        pages += "[" + current.AsStd() + "]";
        offered.RemoveAll();
        GetBackMenuUrl({}, nullptr);
        for (const CString& title : offered) pages += title.AsStd();
        return pages;
    }
    CString Back(int item) {
        choice = item;
        return GetBackMenuUrl({1, 2}, nullptr);
    }

protected:
    int ChooseFromMenu(const CStringArray& texts, QvPoint, HWND) override {
        offered = texts;
        return choice;
    }

private:
    int choice = -1;
    CStringArray offered;
};

TEST(HistoryMgr, MovesWhenThePageIsShown) {
    History history;
    EXPECT_EQ(history.HasCurrentUrl() + history.HasBackUrl() + history.HasForwardUrl(), 0);
    EXPECT_EQ(history.GetBackUrl() + history.GetForwardUrl() + history.GetCurrentUrl(), "");
    EXPECT_EQ(history.After({"A", "B", "C", "C"}), "[C]BA");
    EXPECT_EQ(history.GetBackUrl(), "B");
    EXPECT_EQ(history.Pages(), "[C]BA");
    EXPECT_EQ(history.After({"B"}), "C[B]A");
    EXPECT_EQ(history.GetForwardUrl(), "C");
    EXPECT_EQ(history.After({"D"}), "[D]BA") << "another page came";
    EXPECT_EQ(history.Back(1), "A");
    EXPECT_EQ(history.After({"A"}), "DB[A]");
    EXPECT_EQ(history.HasBackUrl(), 0);
    EXPECT_EQ(history.After({"D"}), "[D]BA") << "seen before: nothing is lost";
    EXPECT_EQ(history.Back(7), "");
    history.Reset();
    EXPECT_EQ(history.Pages(), "[]");
}

TEST(HistoryMgr, KeepsTheNewest) {
    History history;
    history.SetMaxLinks(2);
    EXPECT_EQ(history.After({"A", "B", "C"}), "[C]B");
    history.SetMaxLinks(5);
    history.After({"D", "E", "F"});
    history.GetBackUrl();
    history.After({"E"});
    history.SetMaxLinks(1);
    EXPECT_EQ(history.Pages(), "[F]");
    history.SetMaxLinks(0);
    EXPECT_EQ(history.HasCurrentUrl(), 0);
}

TEST(HistoryMgr, AlwaysNewAllowsRevisits) {
    History history;
    history.SetAlwaysNew(2);  // only 1 is on
    EXPECT_EQ(history.After({"A", "B", "A"}), "B[A]");
    history.SetAlwaysNew(1);
    EXPECT_EQ(history.After({"B", "A"}), "[A]BA");
    history.GetBackUrl();
    EXPECT_EQ(history.After({"B", "A"}), "[A]BA");
    history.UpdateHistory("T", "Title");
    EXPECT_EQ(history.After({"U"}), "[U]TitleABA");
}

}  // namespace
