#pragma once

#include "platform/Text.h"
#include "tests/support/ScopedLocale.h"

/// A locale whose texts are UTF-8. False where the system's code page does not follow the locale.
class Utf8Locale : public ScopedLocale {
public:
    Utf8Locale() : ScopedLocale("C.UTF-8") {}

    explicit operator bool() const {
        return ScopedLocale::operator bool() && qv::platform::CurrentCodePage() == qv::platform::CodePage::Utf8;
    }
};
