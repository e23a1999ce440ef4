#pragma once

#include "text/TString.h"

#include <QString>

#include <ostream>

// GoogleTest shows strings as text, not as the pointer they convert to.
inline void PrintTo(AString const& text, std::ostream* os)
{
    *os << '"' << text.c_str() << '"';
}

inline void PrintTo(WString const& text, std::ostream* os)
{
    *os << "u\"" << text.qString().toStdString() << '"';
}
