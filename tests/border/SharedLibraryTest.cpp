// What holds only for the shared library itself: that loading it registers it, and that its exceptions reach the program.

#include <gtest/gtest.h>

#include "qvcommon/Exceptions.h"
#include "qvcommon/FileUtils.h"
#include "qvcommon/framework/File.h"
#include "qvcommon/framework/Module.h"
#include "tests/support/Raised.h"

namespace {

TEST(SharedLibrary, RegistersItselfWhenItIsLoaded) {
    const CDynLinkLibrary* const library = CDynLinkLibrary::GetFirst();
    ASSERT_TRUE(library);
    EXPECT_TRUE(library->GetModule().hModule);
    EXPECT_FALSE(library->IsSystem());
    EXPECT_EQ(CRuntimeClass::FromName("CVorbexException"), RUNTIME_CLASS(CVorbexException));
    EXPECT_EQ(RUNTIME_CLASS(CVorbexException)->m_wSchema, 0xFFFFu);
    EXPECT_FALSE(RUNTIME_CLASS(CVorbexException)->CreateObject());
    EXPECT_FALSE(CRuntimeClass::FromName("CNoSuchClass"));
}

TEST(SharedLibrary, ThrowsWhatProgramsCatchByTypeAndByBase) {
    EXPECT_TRUE(Raised<CVorbexCancelException>(&ThrowQvCancelException));
    EXPECT_TRUE(Raised<CVorbexException>(&ThrowQvCancelException));
    EXPECT_TRUE(Raised<CFileException>([] { CFile::Remove("no such folder\\no such file"); }));
    EXPECT_TRUE(Raised<CException>([] { CFile::Remove("no such folder\\no such file"); }));
}

}  // namespace
