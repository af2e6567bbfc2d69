#include "core/Module.h"

#include <gtest/gtest.h>

namespace {

using qv::ModuleEntry;
using qv::ModuleEvent;

TEST(Module, RegisteredWhileProcessIsAttached) {
    const CDynLinkLibrary* const before = CDynLinkLibrary::GetFirst();
    AFX_EXTENSION_MODULE record;
    EXPECT_FALSE(ModuleEntry(nullptr, ModuleEvent::ProcessAttach, record));
    EXPECT_EQ(CDynLinkLibrary::GetFirst(), before);

    EXPECT_TRUE(ModuleEntry(&record, ModuleEvent::ProcessAttach, record));
    EXPECT_TRUE(ModuleEntry(&record, ModuleEvent::ThreadAttach, record));
    EXPECT_TRUE(ModuleEntry(&record, ModuleEvent::ThreadDetach, record));
    ASSERT_NE(CDynLinkLibrary::GetFirst(), before);
    EXPECT_EQ(CDynLinkLibrary::GetFirst()->GetNext(), before);
    EXPECT_TRUE(ModuleEntry(&record, ModuleEvent::ProcessDetach, record));
    EXPECT_EQ(CDynLinkLibrary::GetFirst(), before);
    EXPECT_FALSE(record.bInitialized);
}

}  // namespace
