#pragma once

#include <clocale>
#include <string>

#include "platform/Text.h"

/// Sets the C locale for as long as it lives; false where the system does not have it.
class ScopedLocale {
public:
    explicit ScopedLocale(const char* name)
        : m_before(std::setlocale(LC_ALL, nullptr)), m_isSet(std::setlocale(LC_ALL, name) != nullptr) {}
    ~ScopedLocale() { std::setlocale(LC_ALL, m_before.c_str()); }
    ScopedLocale(const ScopedLocale&) = delete;
    ScopedLocale& operator=(const ScopedLocale&) = delete;

    explicit operator bool() const { return m_isSet; }

private:
    std::string m_before;
    bool m_isSet;
};

/// A locale whose texts are UTF-8; false where the system's code page does not follow the locale.
class Utf8Locale : public ScopedLocale {
public:
    Utf8Locale() : ScopedLocale("C.UTF-8") {}
    explicit operator bool() const {
        return ScopedLocale::operator bool() && qv::platform::CurrentCodePage() == qv::platform::CodePage::Utf8;
    }
};
