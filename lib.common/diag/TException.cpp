#include "diag/TException.h"

#include "text/TString.h"

namespace {

template <class T>
TString<char16_t>* NewTextOrNull(T const* text)
{
    if (!text || !*text)
        return nullptr;
    return new TString<char16_t>(text);
}

TString<char16_t>* ShareText(TString<char16_t> const* text)
{
    return text ? new TString<char16_t>(*text) : nullptr;
}

} // namespace

TException::TException() = default;

TException::TException(char16_t const* message)
    : m_message(NewTextOrNull(message))
{
}

TException::TException(char const* message)
    : m_message(NewTextOrNull(message))
{
}

TException::TException(char16_t const* message, char16_t const* detail)
    : m_message(NewTextOrNull(message)), m_detail(NewTextOrNull(detail))
{
}

TException::TException(char16_t const* message, unsigned code)
    : m_code(code), m_message(NewTextOrNull(message))
{
}

TException::TException(char const* message, unsigned code)
    : m_code(code), m_message(NewTextOrNull(message))
{
}

TException::TException(char16_t const* message, char16_t const* detail, unsigned code)
    : m_code(code), m_message(NewTextOrNull(message)), m_detail(NewTextOrNull(detail))
{
}

TException::TException(char const* message, char const* detail, unsigned code)
    : m_code(code), m_message(NewTextOrNull(message)), m_detail(NewTextOrNull(detail))
{
}

TException::TException(TException const& other)
    : m_code(other.m_code), m_reserved(other.m_reserved),
      m_message(ShareText(other.m_message)), m_detail(ShareText(other.m_detail))
{
}

TException& TException::operator=(TException const& other)
{
    if (this == &other)
        return *this;
    m_code = other.m_code;
    m_reserved = other.m_reserved;
    m_message = ShareText(other.m_message);
    m_detail = ShareText(other.m_detail);
    return *this;
}

TException::~TException()
{
    delete m_message;
    delete m_detail;
}
