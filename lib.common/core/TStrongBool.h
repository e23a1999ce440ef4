#pragma once

// A yes-or-no argument that cannot be passed in another flag's place:
// Save(BSaveOnDelete(true)). Conversion either way is explicit.
template <class Tag>
struct TStrongBool
{
    constexpr explicit TStrongBool(bool value) : m_value(value) {}
    constexpr explicit operator bool() const { return m_value; }
    constexpr bool Get() const { return m_value; }

    bool m_value;
};

// Tags exist by name only. A new flag gets its own: B<Meaning>_.
struct BAlwaysShowWarnings_;
struct BDebugVersion_;
struct BForceCloseReopen_;
struct BIncludeExtension_;
struct BPrependLibFolder_;
struct BSaveOnDelete_;

using BAlwaysShowWarnings = TStrongBool<BAlwaysShowWarnings_>;
using BDebugVersion = TStrongBool<BDebugVersion_>;
using BForceCloseReopen = TStrongBool<BForceCloseReopen_>;
using BIncludeExtension = TStrongBool<BIncludeExtension_>;
using BPrependLibFolder = TStrongBool<BPrependLibFolder_>;
using BSaveOnDelete = TStrongBool<BSaveOnDelete_>;
