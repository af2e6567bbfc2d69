#include "core/Module.h"

#include <gtest/gtest.h>

#include "qvcommon/Exceptions.h"

namespace {

using qv::ModuleEntry;
using qv::ModuleEvent;

TEST(Module, LoadingTheLibraryRegisteredIt) {
    const CDynLinkLibrary* const library = CDynLinkLibrary::GetFirst();
    ASSERT_TRUE(library);
    EXPECT_TRUE(library->GetModule().hModule);
    EXPECT_FALSE(library->IsSystem());
    EXPECT_EQ(CRuntimeClass::FromName("CVorbexException"), RUNTIME_CLASS(CVorbexException));
    EXPECT_EQ(RUNTIME_CLASS(CVorbexException)->m_wSchema, 0xFFFFu);
    EXPECT_FALSE(RUNTIME_CLASS(CVorbexException)->CreateObject());
    EXPECT_FALSE(CRuntimeClass::FromName("CNoSuchClass"));
}

TEST(Module, ComesAndGoesWithTheProcess) {
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
