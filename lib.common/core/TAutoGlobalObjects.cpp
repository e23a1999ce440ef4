#include "core/TAutoGlobalObjects.h"

TAutoGlobalObjects::TAutoGlobalObjects()
{
    LoadGlobalObjects(*this, m_title);
}

TAutoGlobalObjects::TAutoGlobalObjects(TString<char16_t> const& folder, TString<char16_t> const& title)
    : TString<char16_t>(folder), m_title(title)
{
    LoadGlobalObjects(*this, m_title);
}

TAutoGlobalObjects::TAutoGlobalObjects(TAutoGlobalObjects const& other)
    : TString<char16_t>(other), m_title(other.m_title)
{
    LoadGlobalObjects(*this, m_title);
}

TAutoGlobalObjects& TAutoGlobalObjects::operator=(TAutoGlobalObjects const& other)
{
    TString<char16_t>::operator=(other);
    m_title = other.m_title;
    return *this;
}

TAutoGlobalObjects::~TAutoGlobalObjects()
{
    DeleteGlobalObjects(*this, m_title);
}

// Seams: the registry of auto settings comes with the settings classes. Until
// it exists no setting can register, and loading or saving an empty registry
// reads and writes nothing.
void LoadGlobalObjects(TString<char16_t> const&, TString<char16_t> const&)
{
}

void DeleteGlobalObjects(TString<char16_t> const&, TString<char16_t> const&)
{
}
