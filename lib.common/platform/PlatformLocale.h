#pragma once

// While one of these lives, the C library's number conversions on the calling
// thread (printf and strtod families) use the "C" locale, whatever the host
// set: a QCoreApplication takes the locale from the environment on Unix, and
// a decimal comma there would change every number the library writes or reads.
class TCNumericScope
{
public:
    TCNumericScope();
    ~TCNumericScope();
    TCNumericScope(TCNumericScope const&) = delete;
    TCNumericScope& operator=(TCNumericScope const&) = delete;

private:
    void* m_previous;
};
