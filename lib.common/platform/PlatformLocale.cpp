#include "platform/PlatformLocale.h"

#if defined(__unix__) || defined(__APPLE__)
#include <clocale>
#include <locale.h>
#if defined(__APPLE__)
#include <xlocale.h>
#endif

namespace {

locale_t CLocale()
{
    // Made once and kept: a thread may still be using it at unload.
    static locale_t const locale = newlocale(LC_ALL_MASK, "C", static_cast<locale_t>(nullptr));
    return locale;
}

} // namespace

TCNumericScope::TCNumericScope()
    : m_previous(CLocale() ? uselocale(CLocale()) : nullptr)
{
}

TCNumericScope::~TCNumericScope()
{
    if (m_previous)
        uselocale(static_cast<locale_t>(m_previous));
}
#else
// The Windows C run-time keeps the "C" locale unless the host itself calls
// setlocale, which the library doesn't second-guess.
TCNumericScope::TCNumericScope() : m_previous(nullptr) {}
TCNumericScope::~TCNumericScope() = default;
#endif
