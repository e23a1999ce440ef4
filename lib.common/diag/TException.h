#pragma once

#include "core/CommonExport.h"

template <class T> class TString;

// The one exception class of the library. The texts are separate heap objects
// so that the object thrown by value stays small.
class COMMON_EXPORT TException
{
public:
    TException();
    explicit TException(char16_t const* message);
    explicit TException(char const* message);
    TException(char16_t const* message, char16_t const* detail);
    TException(char16_t const* message, unsigned code);
    TException(char const* message, unsigned code);
    TException(char16_t const* message, char16_t const* detail, unsigned code);
    TException(char const* message, char const* detail, unsigned code);
    TException(TException const& other);
    // Shares the source's texts. The texts the target held are not released:
    // exceptions are assigned rarely and this keeps the operator trivial.
    TException& operator=(TException const& other);
    virtual ~TException();

    unsigned Code() const { return m_code; }
    // Null when the exception carries no such text (an empty one included).
    TString<char16_t> const* Message() const { return m_message; }
    TString<char16_t> const* Detail() const { return m_detail; }

private:
    unsigned m_code = 0;
    unsigned m_reserved = 0;
    TString<char16_t>* m_message = nullptr;
    TString<char16_t>* m_detail = nullptr;
};
