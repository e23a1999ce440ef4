#pragma once

#include "core/CommonExport.h"
#include "text/TString.h"

// The host's persistent global state for the length of its main function:
// one of these on the stack of main, made after the QCoreApplication. Making
// it loads every auto setting from the "GlobalObjects" file named by folder
// and title; its end saves them and ends the registry.
//
// The string itself is the folder of the settings file (an empty folder and
// title stand for the library's defaults).
class COMMON_EXPORT TAutoGlobalObjects : public TString<char16_t>
{
public:
    TAutoGlobalObjects();
    TAutoGlobalObjects(TString<char16_t> const& folder, TString<char16_t> const& title);
    TAutoGlobalObjects(TAutoGlobalObjects const& other);
    TAutoGlobalObjects& operator=(TAutoGlobalObjects const& other);
    ~TAutoGlobalObjects();

    TString<char16_t> const& Folder() const { return *this; }
    TString<char16_t> const& Title() const { return m_title; }

private:
    TString<char16_t> m_title;
};

// Loads every registered auto setting from the settings file in folder.
COMMON_EXPORT void LoadGlobalObjects(TString<char16_t> const& folder, TString<char16_t> const& title);

// Saves every registered auto setting to the settings file in folder and
// ends the registry. Does nothing when no setting ever registered.
COMMON_EXPORT void DeleteGlobalObjects(TString<char16_t> const& folder, TString<char16_t> const& title);
