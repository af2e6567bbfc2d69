// What holds only for the shared library itself: that loading it registers it, and that its exceptions reach the program.

#include <gtest/gtest.h>

#include "qvcommon/Exceptions.h"
#include "qvcommon/FileUtils.h"
#include "qvcommon/framework/File.h"
#include "qvcommon/framework/Module.h"

namespace {

TEST(SharedLibrary, RegistersItselfWhenItIsLoaded) {
    const CDynLinkLibrary* const library = CDynLinkLibrary::GetFirst();
    ASSERT_TRUE(library);
    EXPECT_TRUE(library->GetModule().hModule);
    EXPECT_EQ(CRuntimeClass::FromName("CVorbexException"), RUNTIME_CLASS(CVorbexException));
    EXPECT_FALSE(CRuntimeClass::FromName("CNoSuchClass"));
}

template <class Caught, class Action>
bool IsCaughtAs(Action action) {
    try {
        action();
    } catch (Caught* error) {
        error->Delete();
        return true;
    }
    return false;
}

TEST(SharedLibrary, ExceptionsAreCaughtByTypeAndBase) {
    EXPECT_TRUE(IsCaughtAs<CVorbexCancelException>(&ThrowQvCancelException));
    EXPECT_TRUE(IsCaughtAs<CVorbexException>(&ThrowQvCancelException));
    EXPECT_TRUE(IsCaughtAs<CFileException>([] { CFile::Remove("no such folder\\no such file"); }));
    EXPECT_TRUE(IsCaughtAs<CException>([] { CFile::Remove("no such folder\\no such file"); }));
}

}  // namespace
