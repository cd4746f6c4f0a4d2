#pragma once

#include <clocale>
#include <cstdlib>

/// A locale made for the tests, for the life of the object.
class LocaleScope
{
public:
    explicit LocaleScope(const char* name)
    {
        setenv("LOCPATH", ZORVEL_TEST_LOCALES, 1);
        m_installed = std::setlocale(LC_ALL, name) != nullptr;
    }
    ~LocaleScope()
    {
        std::setlocale(LC_ALL, "C");
        unsetenv("LOCPATH");
    }

    LocaleScope(const LocaleScope&) = delete;
    LocaleScope& operator=(const LocaleScope&) = delete;

    bool installed() const { return m_installed; }

private:
    bool m_installed;
};
