// windows.h makes macros of names that the library's classes have. Compiled once for each place that it can take among the
// headers, and linked together: every source must mean the same members.

#ifdef QV_EARLIER_HEADER
#include QV_EARLIER_HEADER
#endif
#include <windows.h>

#include "qvcommon/QvCommon.h"

#include <gtest/gtest.h>

#define QV_TEST(name) TEST(HeaderOrder, name)

namespace {

QV_TEST(QV_ORDER) {
    CWinApp application("QvCommonHeaderOrder");
    EXPECT_TRUE(application.WriteProfileString("section", "entry", "value"));
    EXPECT_EQ(application.GetProfileString("section", "entry"), "value");
    EXPECT_TRUE(application.WriteProfileString("section", nullptr, nullptr));
    EXPECT_EQ(application.GetProfileString("section", "entry", "none"), "none");

    EXPECT_EQ(COleDateTime::GetCurrentTime().GetStatus(), COleDateTime::valid);

    CWnd window;
    ASSERT_TRUE(window.Create(CWnd::dialog));
    window.SetWindowText("text");
    CString text;
    window.GetWindowText(text);
    EXPECT_EQ(text, "text");

    CFileFind find;
    ASSERT_TRUE(find.FindFile("*"));
    find.FindNextFile();
    EXPECT_NE(find.GetFileTitle(), find.GetFilePath());
}

}  // namespace
