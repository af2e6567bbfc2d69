#include "qvcommon/Exceptions.h"

#include <gtest/gtest.h>

#include <cstring>

#include "platform/Error.h"
#include "tests/support/Raised.h"
#include "tests/support/RecordingMessageBox.h"

namespace {

constexpr unsigned long kFileNotFound = 2;  // the same number on every system

std::string MessageOf(CException& exception) {
    char text[256] = {};
    EXPECT_TRUE(exception.GetErrorMessage(text, sizeof text - 1));
    return text;
}

TEST(Exceptions, MessageIncludesCodeOnlyOnRequest) {
    using Row = std::tuple<const char*, int, int, const char*>;
    for (const auto& [text, code, report, message] :
         {Row{"Broken", 0, 1, "Broken (0)"}, Row{"Broken", -7, 1, "Broken (-7)"}, Row{"Broken", 9, 0, "Broken"},
          Row{"", 5, 1, " (5)"}, Row{"100 %s", 1, 0, "100 %s"}}) {
        CVorbexException exception(code, 16, text);
        EXPECT_EQ(exception.GetReportErrorCode(), 1);
        exception.SetReportErrorCode(report);
        EXPECT_EQ(MessageOf(exception), message);
    }
}

TEST(Exceptions, MessageFillsBufferLikeStrncpy) {
    CVorbexException exception(0, 16, "ninechars");
    exception.SetReportErrorCode(0);
    char small[5] = "####";
    UINT help = 77;
    EXPECT_EQ(exception.GetErrorMessage(small, 4, &help), 1);
    EXPECT_EQ(std::memcmp(small, "nine", 5), 0);
    EXPECT_EQ(help, 77u);
    char large[14];
    std::memset(large, '#', sizeof large);
    exception.GetErrorMessage(large, 13);
    EXPECT_EQ(std::memcmp(large, "ninechars\0\0\0\0#", 14), 0);
}

TEST(Exceptions, ReportShowsMessageWithSeverity) {
    RecordingMessageBox box(6);
    CVorbexException exception;
    exception.SetText("Look");
    EXPECT_EQ(exception.ReportError(1, 0), 6);
    exception.SetText(std::string(2000, 'x').c_str());
    exception.ReportError();
    ASSERT_EQ(box.shown.size(), 2u);
    EXPECT_EQ(box.shown[0].text, "Look (0)");
    EXPECT_EQ(box.shown[0].style, 65u);
    EXPECT_EQ(box.shown[1].text, std::string(512, 'x'));
}

TEST(Exceptions, ReportFallsBackToDefaultMessage) {
    class Silent : public CVorbexException {
        BOOL GetErrorMessage(char*, UINT, UINT*) override { return 0; }
    };
    RecordingMessageBox box;
    Silent().ReportError(0, 0xF111);
    Silent().ReportError();
    ASSERT_EQ(box.shown.size(), 2u);
    EXPECT_EQ(box.shown[0].text, AfxLoadString(0xF111));
    EXPECT_EQ(box.shown[1].text, AfxLoadString(0xF020));
}

TEST(Exceptions, CaughtByAnyBaseClass) {
    const auto cancel = [] { ThrowQvCancelException(); };
    const auto exact = Raised<CVorbexCancelException>(cancel);
    ASSERT_TRUE(exact);
    EXPECT_EQ(exact->GetText(), "User cancelled");
    EXPECT_EQ(exact->GetCode(), 0);
    EXPECT_EQ(exact->GetSeverity(), 48);
    EXPECT_EQ(exact->GetReportErrorCode(), 0);
    EXPECT_STREQ(exact->GetRuntimeClass()->m_lpszClassName, "CVorbexException");
    EXPECT_TRUE(exact->IsKindOf(RUNTIME_CLASS(CException)));
    RecordingMessageBox box;
    EXPECT_EQ(exact->ReportError(), 0);
    EXPECT_TRUE(box.shown.empty());
    EXPECT_TRUE(Raised<CVorbexException>(cancel));
    EXPECT_TRUE(Raised<CException>(cancel));
    EXPECT_TRUE(Raised<CObject>(cancel));
}

TEST(Exceptions, SystemErrorsUseSystemMessage) {
    qv::platform::SetLastError(kFileNotFound);
    const auto last = Raised<CVorbexException>([] { ThrowQvLastErrorException(16, 7, 1); });
    ASSERT_TRUE(last);
    EXPECT_EQ(last->GetText(), qv::platform::ErrorMessage(kFileNotFound).c_str());
    EXPECT_FALSE(last->GetText().IsEmpty());
    EXPECT_EQ(last->GetCode(), 7);
    EXPECT_EQ(last->GetSeverity(), 16);
    const auto unknown = Raised<CVorbexException>([] { ThrowQvErrorException(0x1FFFFFFF, 48, 3, 1); });
    ASSERT_TRUE(unknown);
    EXPECT_EQ(MessageOf(*unknown), " (3)");
}

}  // namespace
