#include "text/TRegex.h"

#include "diag/FailureReporting.h"
#include "math/FastMemory.h"
#include "math/MemoryAlloc.h"
#include "text/CharOps.h"

#include <QString>

#include <atomic>
#include <mutex>

#define PCRE2_CODE_UNIT_WIDTH 0
#include <pcre2.h>

namespace {

// The two code-unit widths of PCRE2 under one set of names.
template <class T>
struct TPcre;

template <>
struct TPcre<char>
{
    using Code = pcre2_code_8;
    using MatchData = pcre2_match_data_8;
    static Code* Compile(char const* pattern, uint32_t options, int* error, PCRE2_SIZE* offset)
    {
        return pcre2_compile_8(reinterpret_cast<PCRE2_SPTR8>(pattern), PCRE2_ZERO_TERMINATED, options, error, offset,
                               nullptr);
    }
    static void CompileMachineCode(Code* code) { pcre2_jit_compile_8(code, PCRE2_JIT_COMPLETE); }
    static void Free(Code* code) { pcre2_code_free_8(code); }
    static int Info(Code const* code, uint32_t what)
    {
        uint32_t value = 0;
        pcre2_pattern_info_8(code, what, &value);
        return static_cast<int>(value);
    }
    static MatchData* NewMatchData(Code const* code) { return pcre2_match_data_create_from_pattern_8(code, nullptr); }
    static void FreeMatchData(MatchData* data) { pcre2_match_data_free_8(data); }
    static int Match(Code const* code, char const* text, int length, int start, MatchData* data)
    {
        return pcre2_match_8(code, reinterpret_cast<PCRE2_SPTR8>(text), static_cast<PCRE2_SIZE>(length),
                             static_cast<PCRE2_SIZE>(start), 0, data, nullptr);
    }
    static PCRE2_SIZE const* Offsets(MatchData* data) { return pcre2_get_ovector_pointer_8(data); }
    static int GroupNumber(Code const* code, char const* name)
    {
        return pcre2_substring_number_from_name_8(code, reinterpret_cast<PCRE2_SPTR8>(name));
    }
    static QString ErrorText(int error)
    {
        PCRE2_UCHAR8 buffer[256];
        int const length = pcre2_get_error_message_8(error, buffer, sizeof(buffer));
        return length > 0 ? QString::fromLatin1(reinterpret_cast<char const*>(buffer), length) : QString();
    }
};

template <>
struct TPcre<char16_t>
{
    using Code = pcre2_code_16;
    using MatchData = pcre2_match_data_16;
    static Code* Compile(char16_t const* pattern, uint32_t options, int* error, PCRE2_SIZE* offset)
    {
        return pcre2_compile_16(reinterpret_cast<PCRE2_SPTR16>(pattern), PCRE2_ZERO_TERMINATED, options, error, offset,
                                nullptr);
    }
    static void CompileMachineCode(Code* code) { pcre2_jit_compile_16(code, PCRE2_JIT_COMPLETE); }
    static void Free(Code* code) { pcre2_code_free_16(code); }
    static int Info(Code const* code, uint32_t what)
    {
        uint32_t value = 0;
        pcre2_pattern_info_16(code, what, &value);
        return static_cast<int>(value);
    }
    static MatchData* NewMatchData(Code const* code) { return pcre2_match_data_create_from_pattern_16(code, nullptr); }
    static void FreeMatchData(MatchData* data) { pcre2_match_data_free_16(data); }
    static int Match(Code const* code, char16_t const* text, int length, int start, MatchData* data)
    {
        return pcre2_match_16(code, reinterpret_cast<PCRE2_SPTR16>(text), static_cast<PCRE2_SIZE>(length),
                              static_cast<PCRE2_SIZE>(start), 0, data, nullptr);
    }
    static PCRE2_SIZE const* Offsets(MatchData* data) { return pcre2_get_ovector_pointer_16(data); }
    static QString ErrorText(int error)
    {
        PCRE2_UCHAR16 buffer[256];
        int const length = pcre2_get_error_message_16(error, buffer, sizeof(buffer) / sizeof(buffer[0]));
        return length > 0 ? QString::fromUtf16(buffer, length) : QString();
    }
};

uint32_t PcreOptions(unsigned options)
{
    struct TPair
    {
        unsigned m_ours;
        uint32_t m_pcre;
    };
    static TPair const pairs[] = {
        {eRegexCaseless, PCRE2_CASELESS},
        {eRegexMultiline, PCRE2_MULTILINE},
        {eRegexDotAll, PCRE2_DOTALL},
        {eRegexExtended, PCRE2_EXTENDED},
        {eRegexAnchored, PCRE2_ANCHORED},
        {eRegexDollarEndOnly, PCRE2_DOLLAR_ENDONLY},
        {eRegexUngreedy, PCRE2_UNGREEDY},
        {eRegexNoAutoCapture, PCRE2_NO_AUTO_CAPTURE},
        {eRegexUnicodeClasses, PCRE2_UCP},
    };
    // The library's narrow text is UTF-8 and its wide text UTF-16.
    uint32_t result = PCRE2_UTF | PCRE2_MATCH_INVALID_UTF;
    for (TPair const& pair : pairs)
        if (options & pair.m_ours)
            result |= pair.m_pcre;
    return result;
}

} // namespace

// ---- TRegexMatch -------------------------------------------------------------

TRegexMatch::TRegexMatch() : m_offsets(nullptr), m_groupCount(0)
{
}

TRegexMatch::TRegexMatch(TRegexMatch const& other) : m_offsets(nullptr), m_groupCount(0)
{
    Set(other.m_groupCount, other.m_offsets);
}

TRegexMatch& TRegexMatch::operator=(TRegexMatch const& other)
{
    if (&other != this)
        Set(other.m_groupCount, other.m_offsets);
    return *this;
}

TRegexMatch::~TRegexMatch()
{
    Clear();
}

int TRegexMatch::Start(int group) const
{
    return group >= 0 && group < m_groupCount ? m_offsets[2 * group] : -1;
}

int TRegexMatch::End(int group) const
{
    return group >= 0 && group < m_groupCount ? m_offsets[2 * group + 1] : -1;
}

int TRegexMatch::Length(int group) const
{
    int const start = Start(group);
    return start < 0 ? -1 : End(group) - start;
}

void TRegexMatch::Set(int groupCount, int const* offsets)
{
    if (groupCount != m_groupCount) {
        Clear();
        if (groupCount > 0)
            m_offsets = static_cast<int*>(malloc_ex(groupCount * 2 * static_cast<int>(sizeof(int))));
        m_groupCount = groupCount;
    }
    if (groupCount > 0)
        FastCopyEx(offsets, m_offsets, static_cast<size_t>(groupCount) * 2 * sizeof(int));
}

void TRegexMatch::Clear()
{
    free_ex(m_offsets);
    m_offsets = nullptr;
    m_groupCount = 0;
}

// ---- TRegex --------------------------------------------------------------------

// Compiled once per width, the second width on its first use; shared by the
// copies of a TRegex.
struct TRegex::TCode
{
    std::atomic<int> m_references{1};
    unsigned m_options = 0;
    TString<char> m_narrowPattern;
    TString<char16_t> m_widePattern;
    std::atomic<pcre2_code_8*> m_narrow{nullptr};
    std::atomic<pcre2_code_16*> m_wide{nullptr};
    std::mutex m_mutex;
    bool m_narrowTried = false;
    bool m_wideTried = false;
    bool m_valid = false;
    int m_errorOffset = -1;
    QString m_error;
    int m_captureCount = 0;

    ~TCode()
    {
        if (pcre2_code_8* code = m_narrow.load())
            TPcre<char>::Free(code);
        if (pcre2_code_16* code = m_wide.load())
            TPcre<char16_t>::Free(code);
    }

    template <class T>
    std::atomic<typename TPcre<T>::Code*>& Slot()
    {
        if constexpr (std::is_same_v<T, char>)
            return m_narrow;
        else
            return m_wide;
    }

    template <class T>
    bool& Tried()
    {
        if constexpr (std::is_same_v<T, char>)
            return m_narrowTried;
        else
            return m_wideTried;
    }

    template <class T>
    TString<T> const& Pattern() const
    {
        if constexpr (std::is_same_v<T, char>)
            return m_narrowPattern;
        else
            return m_widePattern;
    }

    // Once per width. The first compile decides validity and reports; the
    // second may run while other threads read what the first one set.
    template <class T>
    typename TPcre<T>::Code* CompileFor(bool first)
    {
        int error = 0;
        PCRE2_SIZE offset = 0;
        typename TPcre<T>::Code* code = TPcre<T>::Compile(Pattern<T>().c_str(), PcreOptions(m_options), &error, &offset);
        if (!code) {
            if (first) {
                m_error = TPcre<T>::ErrorText(error);
                m_errorOffset = static_cast<int>(offset);
            }
            return nullptr;
        }
        TPcre<T>::CompileMachineCode(code);
        if (first)
            m_captureCount = TPcre<T>::Info(code, PCRE2_INFO_CAPTURECOUNT);
        return code;
    }

    template <class T>
    typename TPcre<T>::Code* Get()
    {
        typename TPcre<T>::Code* code = Slot<T>().load(std::memory_order_acquire);
        if (code || !m_valid)
            return code;
        std::lock_guard<std::mutex> lock(m_mutex);
        code = Slot<T>().load(std::memory_order_relaxed);
        if (!code && !Tried<T>()) {
            Tried<T>() = true;
            code = CompileFor<T>(false);
            Slot<T>().store(code, std::memory_order_release);
        }
        return code;
    }
};

TRegex::TRegex() : m_code(nullptr)
{
}

TRegex::TRegex(char const* pattern, unsigned options) : m_code(nullptr)
{
    Compile(pattern, options);
}

TRegex::TRegex(char16_t const* pattern, unsigned options) : m_code(nullptr)
{
    Compile(pattern, options);
}

TRegex::TRegex(TRegex const& other) : m_code(other.m_code)
{
    if (m_code)
        m_code->m_references.fetch_add(1, std::memory_order_relaxed);
}

TRegex& TRegex::operator=(TRegex const& other)
{
    if (other.m_code)
        other.m_code->m_references.fetch_add(1, std::memory_order_relaxed);
    Release();
    m_code = other.m_code;
    return *this;
}

TRegex::TRegex(TRegex&& other) noexcept : m_code(other.m_code)
{
    other.m_code = nullptr;
}

TRegex& TRegex::operator=(TRegex&& other) noexcept
{
    if (&other != this) {
        Release();
        m_code = other.m_code;
        other.m_code = nullptr;
    }
    return *this;
}

TRegex::~TRegex()
{
    Release();
}

void TRegex::Release()
{
    if (m_code && m_code->m_references.fetch_sub(1, std::memory_order_acq_rel) == 1)
        delete m_code;
    m_code = nullptr;
}

bool TRegex::Compile(char const* pattern, unsigned options)
{
    Release();
    m_code = new TCode;
    m_code->m_options = options;
    if (!pattern) {
        m_code->m_error = QStringLiteral("No pattern");
        return false;
    }
    m_code->m_narrowPattern = TString<char>(pattern);
    m_code->m_widePattern = TString<char16_t>(m_code->m_narrowPattern);
    m_code->m_narrowTried = true;
    pcre2_code_8* code = m_code->CompileFor<char>(true);
    m_code->m_narrow.store(code, std::memory_order_release);
    m_code->m_valid = code != nullptr;
    return m_code->m_valid;
}

bool TRegex::Compile(char16_t const* pattern, unsigned options)
{
    Release();
    m_code = new TCode;
    m_code->m_options = options;
    if (!pattern) {
        m_code->m_error = QStringLiteral("No pattern");
        return false;
    }
    m_code->m_widePattern = TString<char16_t>(pattern);
    m_code->m_narrowPattern = TString<char>(m_code->m_widePattern);
    m_code->m_wideTried = true;
    pcre2_code_16* code = m_code->CompileFor<char16_t>(true);
    m_code->m_wide.store(code, std::memory_order_release);
    m_code->m_valid = code != nullptr;
    return m_code->m_valid;
}

bool TRegex::IsValid() const
{
    return m_code && m_code->m_valid;
}

unsigned TRegex::GetOptions() const
{
    return m_code ? m_code->m_options : 0;
}

QString TRegex::ErrorMessage() const
{
    return m_code && !m_code->m_valid ? m_code->m_error : QString();
}

int TRegex::ErrorOffset() const
{
    return m_code && !m_code->m_valid ? m_code->m_errorOffset : -1;
}

int TRegex::CaptureCount() const
{
    return IsValid() ? m_code->m_captureCount : 0;
}

int TRegex::GroupNumber(char const* name) const
{
    if (!IsValid() || !name)
        return -1;
    pcre2_code_8* code = m_code->Get<char>();
    int const number = code ? TPcre<char>::GroupNumber(code, name) : -1;
    return number > 0 ? number : -1;
}

namespace {

template <class T>
bool RunMatch(typename TPcre<T>::Code const* code, T const* text, TRegexMatch* match, int start, int length,
              int* offsets, int groups)
{
    if (!code || !text)
        return false;
    if (length < 0)
        length = TextLength(text);
    if (start < 0 || start > length)
        return false;
    typename TPcre<T>::MatchData* data = TPcre<T>::NewMatchData(code);
    if (!data)
        ThrowIfNoMemory(nullptr);
    int const result = TPcre<T>::Match(code, text, length, start, data);
    bool const matched = result >= 0;
    if (matched && match) {
        PCRE2_SIZE const* vector = TPcre<T>::Offsets(data);
        for (int i = 0; i < 2 * groups; ++i)
            offsets[i] = vector[i] == PCRE2_UNSET ? -1 : static_cast<int>(vector[i]);
    }
    TPcre<T>::FreeMatchData(data);
    return matched;
}

} // namespace

// The offsets go through a buffer on the stack for the usual few groups.
template <class T>
bool TRegex::MatchText(T const* text, TRegexMatch* match, int start, int length) const
{
    if (match)
        match->Clear();
    if (!IsValid())
        return false;
    int const groups = m_code->m_captureCount + 1;
    int local[32];
    int* offsets = groups <= 16 ? local : static_cast<int*>(malloc_ex(groups * 2 * static_cast<int>(sizeof(int))));
    bool const matched = RunMatch<T>(m_code->Get<T>(), text, match, start, length, offsets, groups);
    if (matched && match)
        match->Set(groups, offsets);
    if (offsets != local)
        free_ex(offsets);
    return matched;
}

bool TRegex::Match(char const* text, TRegexMatch* match, int start, int length) const
{
    return MatchText(text, match, start, length);
}

bool TRegex::Match(char16_t const* text, TRegexMatch* match, int start, int length) const
{
    return MatchText(text, match, start, length);
}

TString<char> TRegex::Find(char const* text, int group) const
{
    TRegexMatch match;
    if (!Match(text, &match) || !match.HasGroup(group))
        return TString<char>();
    return TString<char>(text + match.Start(group), length_t(match.Length(group)));
}

TString<char16_t> TRegex::Find(char16_t const* text, int group) const
{
    TRegexMatch match;
    if (!Match(text, &match) || !match.HasGroup(group))
        return TString<char16_t>();
    return TString<char16_t>(text + match.Start(group), length_t(match.Length(group)));
}

bool TRegex::HasJit()
{
    uint32_t jit = 0;
    pcre2_config_8(PCRE2_CONFIG_JIT, &jit);
    return jit != 0;
}
