#pragma once

#include "platform/Text.h"
#include "qvcommon/CodePage.h"

/// Sets the code page for as long as it lives. False where the system does not know it.
class ScopedCodePage {
public:
    explicit ScopedCodePage(int codePage) : m_set(_setmbcp(codePage) == 0) {}
    ~ScopedCodePage() { _setmbcp(_MB_CP_ANSI); }
    ScopedCodePage(const ScopedCodePage&) = delete;
    ScopedCodePage& operator=(const ScopedCodePage&) = delete;

    explicit operator bool() const { return m_set; }

private:
    bool m_set;
};

/// Western texts, a byte a character. False where the system has no such page, or one of its own comes first.
class WesternCodePage : public ScopedCodePage {
public:
    WesternCodePage() : ScopedCodePage(1252) {}

    explicit operator bool() const {
        return ScopedCodePage::operator bool() && qv::platform::CurrentCodePage() == qv::platform::CodePage::SingleByte;
    }
};
