#include "text/TRegex.h"

#include "diag/FailureReporting.h"
#include "math/FastMemory.h"
#include "math/MemoryAlloc.h"
#include "text/CharOps.h"

#include <QString>

#include <atomic>
#include <mutex>
#include <type_traits>

#define PCRE2_CODE_UNIT_WIDTH 0
#include <pcre2.h>

namespace {

// The two code-unit widths of PCRE2 under one set of names: the calls differ
// only in their suffix.
template <class T>
struct TPcre;

#define COMMON_PCRE2_WIDTH(T, W)                                                                                     \
    template <>                                                                                                      \
    struct TPcre<T>                                                                                                  \
    {                                                                                                                \
        using Code = pcre2_code_##W;                                                                                 \
        using MatchData = pcre2_match_data_##W;                                                                      \
        static Code* Compile(T const* pattern, uint32_t options, int* error, PCRE2_SIZE* offset)                     \
        {                                                                                                            \
            return pcre2_compile_##W(reinterpret_cast<PCRE2_SPTR##W>(pattern), PCRE2_ZERO_TERMINATED, options,      \
                                     error, offset, nullptr);                                                        \
        }                                                                                                            \
        static void CompileMachineCode(Code* code) { pcre2_jit_compile_##W(code, PCRE2_JIT_COMPLETE); }              \
        static void Free(Code* code) { pcre2_code_free_##W(code); }                                                  \
        static int Info(Code const* code, uint32_t what)                                                             \
        {                                                                                                            \
            uint32_t value = 0;                                                                                      \
            pcre2_pattern_info_##W(code, what, &value);                                                              \
            return static_cast<int>(value);                                                                          \
        }                                                                                                            \
        static MatchData* NewMatchData(uint32_t pairs) { return pcre2_match_data_create_##W(pairs, nullptr); }       \
        static void FreeMatchData(MatchData* data) { pcre2_match_data_free_##W(data); }                              \
        static int Match(Code const* code, T const* text, int length, int start, MatchData* data)                    \
        {                                                                                                            \
            return pcre2_match_##W(code, reinterpret_cast<PCRE2_SPTR##W>(text), static_cast<PCRE2_SIZE>(length),     \
                                   static_cast<PCRE2_SIZE>(start), 0, data, nullptr);                                \
        }                                                                                                            \
        static PCRE2_SIZE const* Offsets(MatchData* data) { return pcre2_get_ovector_pointer_##W(data); }            \
    };

COMMON_PCRE2_WIDTH(char, 8)
COMMON_PCRE2_WIDTH(char16_t, 16)
#undef COMMON_PCRE2_WIDTH

QString NoPatternMessage()
{
    return QStringLiteral("No pattern");
}

// The messages are the same ASCII text for either width.
QString PcreErrorText(int error)
{
    PCRE2_UCHAR8 buffer[256];
    int const length = pcre2_get_error_message_8(error, buffer, sizeof(buffer));
    return length > 0 ? QString::fromLatin1(reinterpret_cast<char const*>(buffer), length) : QString();
}

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

// The layout is part of the exported interface: the spare room beside the
// group count holds the capacity, and one group fits in the pointer's place.
static_assert(sizeof(TRegexMatch) == sizeof(int*) + 2 * sizeof(int), "TRegexMatch changed size");

TRegexMatch::TRegexMatch() : m_inline{-1, -1}, m_groupCount(0), m_capacity(1)
{
}

TRegexMatch::TRegexMatch(TRegexMatch const& other) : m_inline{-1, -1}, m_groupCount(0), m_capacity(1)
{
    Set(other.m_groupCount, other.Offsets());
}

TRegexMatch& TRegexMatch::operator=(TRegexMatch const& other)
{
    if (&other != this)
        Set(other.m_groupCount, other.Offsets());
    return *this;
}

TRegexMatch::~TRegexMatch()
{
    if (m_capacity > 1)
        free_ex(m_offsets);
}

int TRegexMatch::Start(int group) const
{
    return group >= 0 && group < m_groupCount ? Offsets()[2 * group] : -1;
}

int TRegexMatch::End(int group) const
{
    return group >= 0 && group < m_groupCount ? Offsets()[2 * group + 1] : -1;
}

int TRegexMatch::Length(int group) const
{
    int const start = Start(group);
    return start < 0 ? -1 : End(group) - start;
}

// Storage only grows, so a match reused from call to call allocates once.
// Null offsets leave the groups for the caller to fill.
void TRegexMatch::Set(int groupCount, int const* offsets)
{
    if (groupCount > m_capacity) {
        auto* grown = static_cast<int*>(malloc_ex(groupCount * 2 * static_cast<int>(sizeof(int))));
        if (m_capacity > 1)
            free_ex(m_offsets);
        m_offsets = grown;
        m_capacity = groupCount;
    }
    m_groupCount = groupCount;
    if (groupCount > 0 && offsets)
        FastCopyEx(offsets, Offsets(), static_cast<size_t>(groupCount) * 2 * sizeof(int));
}

void TRegexMatch::Clear()
{
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
    TString<T>& Pattern()
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
                m_error = PcreErrorText(error);
                m_errorOffset = static_cast<int>(offset);
            }
            return nullptr;
        }
        TPcre<T>::CompileMachineCode(code);
        if (first)
            m_captureCount = TPcre<T>::Info(code, PCRE2_INFO_CAPTURECOUNT);
        return code;
    }

    // The compile that decides validity, for the width the pattern came in;
    // the pattern is kept in the other width for later.
    template <class T>
    bool CompileFirst(T const* pattern)
    {
        using TOther = std::conditional_t<std::is_same_v<T, char>, char16_t, char>;
        if (!pattern) {
            m_error = NoPatternMessage();
            return false;
        }
        Pattern<T>() = TString<T>(pattern);
        Pattern<TOther>() = TString<TOther>(Pattern<T>());
        Tried<T>() = true;
        typename TPcre<T>::Code* code = CompileFor<T>(true);
        Slot<T>().store(code, std::memory_order_release);
        m_valid = code != nullptr;
        return m_valid;
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
    return m_code->CompileFirst(pattern);
}

bool TRegex::Compile(char16_t const* pattern, unsigned options)
{
    Release();
    m_code = new TCode;
    m_code->m_options = options;
    return m_code->CompileFirst(pattern);
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
    int const number = code ? pcre2_substring_number_from_name_8(code, reinterpret_cast<PCRE2_SPTR8>(name)) : -1;
    return number > 0 ? number : -1;
}

namespace {

// The match data that each thread keeps for each width. pcre2_match leaves
// nothing in a block that a later call depends on, so one block serves any
// pattern with no more groups than it holds, and a match allocates nothing.
template <class T>
struct TScratch
{
    typename TPcre<T>::MatchData* data;
    uint32_t pairs;
};

struct TThreadMatchData
{
    TScratch<char> narrow;
    TScratch<char16_t> wide;
    bool ending; // the blocks are gone; later calls make their own
};

// Trivial, so that reaching it needs no guard; the keeper frees the blocks.
thread_local TThreadMatchData s_threadMatchData;

struct TThreadMatchDataKeeper
{
    bool m_armed = false;
    ~TThreadMatchDataKeeper()
    {
        TThreadMatchData& blocks = s_threadMatchData;
        TPcre<char>::FreeMatchData(blocks.narrow.data);
        TPcre<char16_t>::FreeMatchData(blocks.wide.data);
        blocks = TThreadMatchData{{nullptr, 0}, {nullptr, 0}, true};
    }
};

thread_local TThreadMatchDataKeeper s_threadMatchDataKeeper;

// Room for the groups of most patterns, so that a thread rarely grows its block.
constexpr uint32_t kMinimumPairs = 16;

template <class T>
TScratch<T>& ThreadScratch()
{
    if constexpr (std::is_same_v<T, char>)
        return s_threadMatchData.narrow;
    else
        return s_threadMatchData.wide;
}

// The block one match runs in: the thread's own, grown when too small, or
// one of its own while the thread ends.
template <class T>
class TMatchBlock
{
public:
    explicit TMatchBlock(uint32_t pairs)
    {
        TScratch<T>& scratch = ThreadScratch<T>();
        if (scratch.pairs >= pairs) {
            m_data = scratch.data;
            return;
        }
        uint32_t const size = pairs > kMinimumPairs ? pairs : kMinimumPairs;
        m_data = TPcre<T>::NewMatchData(size);
        if (!m_data)
            ThrowIfNoMemory(nullptr);
        if (s_threadMatchData.ending) {
            m_owned = true;
            return;
        }
        // Touching the keeper has it run when the thread ends.
        s_threadMatchDataKeeper.m_armed = true;
        TPcre<T>::FreeMatchData(scratch.data);
        scratch = TScratch<T>{m_data, size};
    }
    ~TMatchBlock()
    {
        if (m_owned)
            TPcre<T>::FreeMatchData(m_data);
    }
    TMatchBlock(TMatchBlock const&) = delete;
    TMatchBlock& operator=(TMatchBlock const&) = delete;

    typename TPcre<T>::MatchData* Data() const { return m_data; }

private:
    typename TPcre<T>::MatchData* m_data = nullptr;
    bool m_owned = false;
};

} // namespace

// The groups go straight from the match data into match.
template <class T>
inline bool TRegex::MatchText(T const* text, TRegexMatch* match, int start, int length) const
{
    if (match)
        match->Clear();
    if (!IsValid() || !text)
        return false;
    typename TPcre<T>::Code const* code = m_code->Get<T>();
    if (!code)
        return false;
    if (length < 0)
        length = TextLength(text);
    if (start < 0 || start > length)
        return false;
    int const groups = m_code->m_captureCount + 1;
    TMatchBlock<T> block(static_cast<uint32_t>(groups));
    if (TPcre<T>::Match(code, text, length, start, block.Data()) < 0)
        return false;
    if (match) {
        match->Set(groups, nullptr);
        int* offsets = match->Offsets();
        PCRE2_SIZE const* vector = TPcre<T>::Offsets(block.Data());
        for (int i = 0; i < 2 * groups; ++i)
            offsets[i] = vector[i] == PCRE2_UNSET ? -1 : static_cast<int>(vector[i]);
    }
    return true;
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
