#pragma once

#include <clocale>
#include <string>

#include "platform/Path.h"

/// Sets the C locale for as long as it lives. False when the system has no locale of that name; nothing changes then.
class ScopedLocale {
public:
    explicit ScopedLocale(const char* name)
        : m_before(std::setlocale(LC_ALL, nullptr)), m_set(std::setlocale(LC_ALL, name)) {}
    ~ScopedLocale() { std::setlocale(LC_ALL, m_before.c_str()); }
    ScopedLocale(const ScopedLocale&) = delete;
    ScopedLocale& operator=(const ScopedLocale&) = delete;

    explicit operator bool() const { return m_set; }

private:
    std::string m_before;
    bool m_set;
};

/// The German locale under the name that the system knows.
inline const char* GermanLocale() {
    return qv::platform::HasDriveLetters() ? "German_Germany.1252" : "de_DE.UTF-8";
}
