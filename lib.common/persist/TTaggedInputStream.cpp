#include "persist/TTaggedInputStream.h"

#include "core/StringConstants.h"
#include "diag/TExceptionThrower.h"
#include "math/Base64.h"
#include "math/Checksum.h"
#include "math/MemoryAlloc.h"
#include "persist/ByteSwap.h"
#include "persist/ComposeBuffer.h"
#include "persist/DecimalText.h"
#include "persist/TNodeFinder.h"
#include "persist/TXmlParserForTagStream.h"
#include "persist/TaggedNodeWalk.h"
#include "text/TRegExpr.h"

#include <QByteArray>
#include <QFile>
#include <QString>
#include <QUuid>

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <type_traits>

namespace {

constexpr unsigned int kHeaderCrc = 4;
constexpr unsigned int kHeaderSize = 8;
constexpr unsigned int kHeaderChecked = 12;
constexpr unsigned int kMinimumDocument = 13;
constexpr unsigned int kGroupHead = 20;
constexpr unsigned int kSmallHead = 8;
constexpr unsigned int kBigHead = 12;
// A walk that runs this long goes to the name index.
constexpr unsigned int kShortWalk = 4;

int IntAt(unsigned char const* at)
{
    int value;
    std::memcpy(&value, at, 4);
    return value;
}

// One bit for each 4-byte word of a block: each node may be met once.
class TNodeMarks
{
public:
    explicit TNodeMarks(unsigned int size) : m_bytes(size / 32 + 1) { std::memset(m_bytes.Data(), 0, size / 32 + 1); }
    // False when the node was met before.
    bool Mark(unsigned int node)
    {
        unsigned char& byte = reinterpret_cast<unsigned char&>(m_bytes.Data()[node / 32]);
        unsigned char const bit = static_cast<unsigned char>(1u << (node / 4 % 8));
        if (byte & bit)
            return false;
        byte |= bit;
        return true;
    }

private:
    TComposeBuffer m_bytes;
};

// The CDATA section that a value of an XML document may still hold, in the
// library's own pattern language.
TRegExpr<char> const& CDataPattern()
{
    static TRegExpr<char> const pattern = [] {
        TRegExpr<char> compiled;
        compiled.Parse("<!/[CDATA/[{[^/]]*}/]/]>");
        return compiled;
    }();
    return pattern;
}

// The type a number is stored as: long keeps 4 bytes everywhere.
template <class T>
using TStored = std::conditional_t<std::is_same_v<T, long>, int32_t,
                                   std::conditional_t<std::is_same_v<T, unsigned long>, uint32_t, T>>;

} // namespace

TTaggedInputStream::TTaggedInputStream(EStreamMode mode, ECanException canException)
      : TTaggedStream(mode), m_finder(nullptr), m_autoDelete(autoDeleteOn), m_canException(canException), m_forceRecreate(false),
      m_xmlConvert(false), m_isInitialized(true)
{
    m_stream = &m_input;
}

TTaggedInputStream::TTaggedInputStream(EStreamMode mode, void const* data, int size, EChecksum checksum,
                                       EAutoDelete autoDelete, ECanException canException)
      : TTaggedStream(mode), m_finder(nullptr), m_autoDelete(autoDelete), m_canException(canException), m_forceRecreate(false),
      m_xmlConvert(false), m_isInitialized(false)
{
    m_stream = &m_input;
    Open(data, size > 0 ? static_cast<unsigned>(size) : 0, checksum);
}

TTaggedInputStream::TTaggedInputStream(EStreamMode mode, QByteArray const& data, EChecksum checksum,
                                       EAutoDelete autoDelete, ECanException canException)
      : TTaggedStream(mode), m_finder(nullptr), m_autoDelete(autoDelete), m_canException(canException), m_forceRecreate(false),
      m_xmlConvert(false), m_isInitialized(false)
{
    m_stream = &m_input;
    auto const size = static_cast<unsigned>(data.size());
    void const* block = data.constData();
    if (autoDelete == autoDeleteOn) {
        // The array keeps its own bytes: the stream owns a copy.
        void* copy = malloc_ex(static_cast<int>(size) + 1);
        std::memcpy(copy, data.constData(), size);
        static_cast<char*>(copy)[size] = 0;
        block = copy;
    }
    Open(block, size, checksum);
}

TTaggedInputStream::TTaggedInputStream(EStreamMode mode, QString const& resourceName, ECanException canException)
    : TTaggedStream(mode), m_finder(nullptr), m_sourceName(resourceName), m_autoDelete(autoDeleteOn), m_canException(canException),
      m_forceRecreate(false), m_xmlConvert(false), m_isInitialized(false)
{
    m_stream = &m_input;
    QFile file(resourceName);
    QByteArray const bytes = file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    auto const size = static_cast<unsigned>(bytes.size());
    // A zero behind the bytes, as a file block has.
    auto* block = static_cast<char*>(malloc_ex(static_cast<int>(size) + 1));
    std::memcpy(block, bytes.constData(), size);
    block[size] = 0;
    if (size >= 5) {
        char const* text = block;
        if (size >= 8 && std::memcmp(text, "\xEF\xBB\xBF", 3) == 0)
            text += 3;
        if (std::strncmp(text, "<?xml", 5) == 0)
            m_mode = streamModeXml;
    }
    Open(block, size, checksumOn);
}

TTaggedInputStream::~TTaggedInputStream()
{
    ReleaseBlock();
}

void TTaggedInputStream::ReleaseBlock()
{
    delete m_finder;
    m_finder = nullptr;
    if (m_autoDelete == autoDeleteOn && m_input.Start())
        free_ex(m_input.Start());
    m_input.SetInputMemory(nullptr, 0);
    m_root = m_currentGroup = 0;
    m_lastFound = m_lastGroup = 0;
}

void TTaggedInputStream::Open(void const* data, unsigned int size, EChecksum checksum)
{
    m_input.SetInputMemory(const_cast<void*>(data), size);
    try {
        if (XML())
            ConvertFromXml();
        if (!InitTaggedInputStream(0, checksum)) {
            FailDamaged();
            return;
        }
    } catch (...) {
        // Out of memory on the way, or the damage itself: an owned block
        // goes with the stream.
        ReleaseBlock();
        throw;
    }
    m_isInitialized = true;
}

void TTaggedInputStream::ConvertFromXml()
{
    unsigned int size = 0;
    unsigned char* document;
    {
        TXmlParserForTagStream parser(reinterpret_cast<char const*>(m_input.Start()),
                                      static_cast<int>(m_input.Size()));
        parser.Execute();
        document = parser.TakeDocument(&size);
    }
    ReleaseBlock();
    // The converted block is always the stream's own.
    m_autoDelete = autoDeleteOn;
    m_input.SetInputMemory(document, size);
    m_mode = streamModeRawTags;
    m_xmlConvert = true;
}

void TTaggedInputStream::FailDamaged()
{
    ReleaseBlock();
    m_isInitialized = false;
    if (m_canException == canExceptionNo)
        return;
    QString const message = QFile::tr("The file is damaged (or it is of the wrong format).") + ks_newLine + ks_newLine
                            + m_sourceName.qString();
    TExceptionThrower(false).SetAndThrow(message);
}

bool TTaggedInputStream::InitTaggedInputStream(int offset, EChecksum checksum)
{
    unsigned int const size = m_input.Size();
    auto const start = static_cast<unsigned>(offset);
    if (offset < 0 || start > size || size - start < kMinimumDocument)
        return false;
    m_input.SetPosition(start);
    unsigned char const* head = m_input.Start() + start;
    m_input.SetEndianType(head[0] == 'L' && head[1] == 'E' && head[2] == 0 ? endianNoSwap : endianSwap);
    m_input.SetPosition(start + kHeaderCrc);
    int storedCrc;
    int storedSize;
    m_input.Read(&storedCrc, 1);
    m_input.Read(&storedSize, 1);
    if (checksum != checksumOff) {
        if (storedSize < static_cast<int>(kMinimumDocument) || static_cast<unsigned>(storedSize) > size - start)
            return false;
        unsigned int const crc = ComputeCrc32(head + kHeaderChecked, static_cast<int>(storedSize) - kHeaderChecked);
        if (crc != static_cast<unsigned>(storedCrc))
            return false;
    }
    m_input.ReadString(m_fileType);
    if (!UseRawTags())
        return true;
    m_input.Align(4);
    m_root = m_currentGroup = static_cast<int>(m_input.GetPosition());
    m_lastFound = m_lastGroup = 0;
    if (!CheckTree())
        return false;
    if (m_input.MustSwap())
        SwapNodeValues(m_root);
    return true;
}

// The tree is walked once, in the byte order of the document, without a
// stack: a group is entered only when its parent link names the group it
// was reached from, so the way back up is that link. Every node is met once
// at most, which ends cycles and shared tails.
//
// Two forms that the writer makes are no damage: a value whose data offset
// came to a multiple of 256 reads as a group whose links are its name, and
// an empty value reads as a big one whose size is its name. Neither is
// entered; reading them stays inside the block like any read.
bool TTaggedInputStream::CheckTree() const
{
    unsigned char const* base = m_input.Start();
    unsigned int const size = m_input.Size();
    bool const swap = m_input.MustSwap();
    auto link = [&](unsigned int at) {
        int value = IntAt(base + at);
        if (swap)
            SwapInPlace(value);
        return value;
    };
    auto named = [&](unsigned int nameAt, unsigned int limit) {
        return nameAt < limit && std::memchr(base + nameAt, 0, limit - nameAt) != nullptr;
    };
    auto const root = static_cast<unsigned int>(m_root);
    if (root % 4 != 0 || root + kGroupHead > size || !named(root + base[root + kNodeNameOffset], size))
        return false;

    TNodeMarks marks(size);
    marks.Mark(root);
    unsigned int group = root;
    int node = link(root + kGroupFirstChild);
    for (;;) {
        while (node != 0) {
            auto const at = static_cast<unsigned int>(node);
            if (node < 0 || at % 4 != 0 || at + kSmallHead > size || !marks.Mark(at))
                return false;
            unsigned int const sizeByte = base[at + kNodeSize];
            unsigned int const dataAt = at + base[at + kNodeDataOffset];
            unsigned int const nameAt = at + base[at + kNodeNameOffset];
            if (dataAt == at) {
                if (at + kGroupHead > size || !named(nameAt, size))
                    return false;
                int const first = link(at + kGroupFirstChild);
                if (static_cast<unsigned>(link(at + kGroupParent)) == group && first >= 0
                    && static_cast<unsigned>(first) < size) {
                    group = at;
                    node = first;
                    continue;
                }
            } else if (sizeByte != 0) {
                if (dataAt + sizeByte > size || !named(nameAt, size))
                    return false;
            } else {
                int const bigSize = at + kBigHead <= size ? link(at + kBigValueSize) : -1;
                bool const big = bigSize >= 0 && dataAt <= size && static_cast<unsigned>(bigSize) <= size - dataAt
                                 && named(nameAt, size);
                bool const empty = dataAt <= size && named(at + kSmallHead, dataAt);
                if (!big && !empty)
                    return false;
            }
            node = link(at + kNodeNext);
        }
        if (group == root)
            return true;
        node = link(group + kNodeNext);
        group = static_cast<unsigned>(link(group + kGroupParent));
    }
}

// Each link is followed as it stands, before the node's own words are
// turned: a long-standing order, kept. Links that leave the block or come
// back to a node already turned end that branch.
void TTaggedInputStream::SwapNodeValues(int node)
{
    unsigned char* base = m_input.Start();
    unsigned int const size = m_input.Size();
    TNodeMarks marks(size);
    TComposeBuffer pendingBlock(size / 8 * 4 + 4);
    int* pending = reinterpret_cast<int*>(pendingBlock.Data());
    int count = 0;
    pending[count++] = node;
    auto swapWord = [&](unsigned int at) {
        int value = IntAt(base + at);
        SwapInPlace(value);
        std::memcpy(base + at, &value, 4);
    };
    while (count > 0) {
        for (node = pending[--count]; node > 0;) {
            auto const at = static_cast<unsigned int>(node);
            if (at % 4 != 0 || at + kSmallHead > size || !marks.Mark(at))
                break;
            int const next = IntAt(base + at + kNodeNext);
            bool const group = base[at + kNodeDataOffset] == 0;
            if (group && at + kGroupHead <= size) {
                pending[count++] = IntAt(base + at + kGroupFirstChild);
                swapWord(at + kGroupParent);
                swapWord(at + kGroupFirstChild);
                swapWord(at + kGroupLastChild);
            } else if (!group && base[at + kNodeSize] == 0 && at + kBigHead <= size) {
                swapWord(at + kBigValueSize);
            }
            swapWord(at + kNodeNext);
            node = next;
        }
    }
}

bool TTaggedInputStream::operator==(TTaggedInputStream const& other) const
{
    unsigned int const size = Size();
    return size == other.Size() && (size == 0 || std::memcmp(Start(), other.Start(), size) == 0);
}

char const* TTaggedInputStream::GetFormattedTag(char const* tag) const
{
    if (!m_xmlConvert)
        return RawTagPart(tag);
    char const* colon = std::strchr(tag, ':');
    if (!colon)
        return tag;
    m_formattedTag = TString<char>(tag, length_t(static_cast<unsigned>(colon - tag)));
    return m_formattedTag.c_str();
}

// Here, beside its busiest caller, so that the compiler can tailor it to
// the short walks of the search.
int WalkToName(unsigned char const* base, unsigned int size, int node, char const* name, int length,
               unsigned int limit, bool* more)
{
    uint32_t word = 0;
    std::memcpy(&word, name, length < 4 ? static_cast<size_t>(length) : 4);
    *more = false;
    for (; node > 0; --limit) {
        if (limit == 0) {
            *more = true;
            return 0;
        }
        auto const at = static_cast<unsigned int>(node);
        if (at % 4 != 0 || at + 8 > size)
            return 0;
        unsigned int const nameAt = at + base[at + TTaggedStream::kNodeNameOffset];
        if (nameAt + 4 <= size) {
            uint32_t nodeWord;
            std::memcpy(&nodeWord, base + nameAt, 4);
            if (nodeWord == word && nameAt + static_cast<unsigned>(length) < size
                && std::memcmp(base + nameAt, name, static_cast<size_t>(length)) == 0 && base[nameAt + length] == 0)
                return node;
        }
        std::memcpy(&node, base + at + TTaggedStream::kNodeNext, 4);
    }
    return 0;
}

int TTaggedInputStream::Walk(int node, char const* name, int length, unsigned int limit, bool* more) const
{
    return WalkToName(m_input.Start(), m_input.Size(), node, name, length, limit, more);
}

int TTaggedInputStream::SearchIndexed(int start, bool wrap, char const* name, int length) const
{
    // A document of the other byte order keeps links the walk can't use as
    // they are; it is walked.
    if (!m_input.MustSwap()) {
        if (!m_finder)
            m_finder = new TNodeFinder;
        int const found = m_finder->Find(m_input.Start(), m_input.Size(), m_currentGroup, start, wrap, name, length);
        if (found >= 0)
            return found;
    }
    unsigned int const limit = m_input.Size() / 8 + 1;
    bool more;
    int const found = Walk(start, name, length, limit, &more);
    if (found != 0 || !wrap)
        return found;
    return Walk(IntAt(m_input.Start() + m_currentGroup + kGroupFirstChild), name, length, limit, &more);
}

// The search of TTaggedStream::FindNode, node for node: from behind the last
// node found when the hint is for this group, else from the first child.
int TTaggedInputStream::Search(char const* tag, int index, int hintMode) const
{
    unsigned int const size = m_input.Size();
    if (!UseRawTags() || m_currentGroup <= 0 || !tag || static_cast<unsigned>(m_currentGroup) + kGroupHead > size)
        return 0;
    TLookupName const lookup(tag, index);
    char const* name = lookup.Text();
    int const length = lookup.Length();
    int const firstChild = IntAt(m_input.Start() + m_currentGroup + kGroupFirstChild);
    bool const hinted = hintMode != 0 && m_currentGroup == m_lastGroup && m_lastFound > 0
                        && static_cast<unsigned>(m_lastFound) + kSmallHead <= size;
    int const start = hinted ? IntAt(m_input.Start() + m_lastFound + kNodeNext) : firstChild;
    bool more;
    int found = Walk(start, name, length, kShortWalk, &more);
    if (more) {
        found = SearchIndexed(start, hinted, name, length);
    } else if (found == 0 && hinted) {
        found = Walk(firstChild, name, length, kShortWalk, &more);
        if (more)
            found = SearchIndexed(firstChild, false, name, length);
    }
    if (hintMode == 1) {
        m_lastFound = found;
        m_lastGroup = m_currentGroup;
    }
    return found;
}

bool TTaggedInputStream::ExistKey(char const* tag, int index, int hintMode) const
{
    return tag && Search(GetFormattedTag(tag), index, hintMode) != 0;
}

bool TTaggedInputStream::MoveDown(char const* tag, int index)
{
    if (!IsValid() || !tag)
        return false;
    tag = GetFormattedTag(tag);
    if (!UseRawTags())
        return true;
    auto const enter = [this](char const* name, int step) {
        int const found = Search(name, step, 1);
        if (found == 0)
            return false;
        m_currentGroup = found;
        return true;
    };
    if (!std::strchr(tag, '/'))
        return enter(tag, index);
    TString<char> const path(tag);
    return WalkGroupPath(path.c_str(), index, m_currentGroup, m_root, enter);
}

void TTaggedInputStream::MoveUp()
{
    if (!UseRawTags() || m_currentGroup <= 0)
        return;
    auto const at = static_cast<unsigned int>(m_currentGroup);
    // A value entered by name has no parent link of its own: what stands
    // there is taken, and a group outside the block is no group.
    m_currentGroup = at + kGroupHead <= m_input.Size() ? IntAt(m_input.Start() + at + kGroupParent) : 0;
}

unsigned char const* TTaggedInputStream::MoveToDataStart(char const* tag, int index, int* node)
{
    int const found = Search(GetFormattedTag(tag), index, 1);
    if (node)
        *node = found;
    if (found == 0)
        return nullptr;
    m_input.SetPosition(static_cast<unsigned>(found) + m_input.Start()[found + kNodeDataOffset]);
    return m_input.GetHeadPointer();
}

void TTaggedInputStream::ForEachGroup(TGroupCallback callback, unsigned long long user)
{
    if (!UseRawTags() || !IsValid() || m_currentGroup <= 0)
        return;
    unsigned int const size = m_input.Size();
    auto const group = static_cast<unsigned int>(m_currentGroup);
    if (group + kGroupHead > size)
        return;
    int count = 0;
    int node = IntAt(m_input.Start() + group + kGroupFirstChild);
    for (unsigned int steps = size / 8 + 1; node > 0 && steps > 0; --steps) {
        auto const at = static_cast<unsigned int>(node);
        if (at % 4 != 0 || at + kSmallHead > size)
            return;
        unsigned char const* base = m_input.Start();
        unsigned int const nameAt = at + base[at + kNodeNameOffset];
        if (base[at + kNodeDataOffset] == 0 && nameAt < size && std::memchr(base + nameAt, 0, size - nameAt)) {
            char const* name = reinterpret_cast<char const*>(base + nameAt);
            int const keep = m_currentGroup;
            MoveDown(name, 0);
            bool const more = callback(this, name, count, user);
            MoveUp();
            // Whatever the callback or a value taken for a group left, the
            // walk goes on in its own group.
            m_currentGroup = keep;
            if (!more)
                return;
            ++count;
        }
        node = IntAt(m_input.Start() + at + kNodeNext);
    }
}

int TTaggedInputStream::NodeDataSize(int node) const
{
    unsigned char const* head = m_input.Start() + node;
    if (head[kNodeSize] != 0 || head[kNodeDataOffset] == 0)
        return head[kNodeSize];
    if (static_cast<unsigned>(node) + kBigHead > m_input.Size())
        return 0;
    return IntAt(head + kBigValueSize);
}

// The decimal text at the position, read in place when its zero lies in the
// block.
long long TTaggedInputStream::ReadDecimal()
{
    auto const* text = reinterpret_cast<char const*>(m_input.GetHeadPointer());
    unsigned int const left = m_input.GetSizeLeft();
    if (left > 0 && std::memchr(text, 0, left))
        return ParseDecimal(text);
    TString<char> copy;
    m_input.ReadString(copy);
    return ParseDecimal(copy.c_str());
}

// In XML a number is decimal text, a floating point value the Base64 of its
// bytes.
template <class T>
inline T TTaggedInputStream::GetNumber(T def, char const* tag, int index)
{
    if (!IsValid())
        return def;
    if (m_xmlConvert) {
        // A missing value gives the default's own text back, so the default
        // is returned without the trip through text.
        char const* formatted = GetFormattedTag(tag);
        m_xmlConvert = false;
        bool const found = MoveToDataStart(formatted, index, nullptr) != nullptr;
        m_xmlConvert = true;
        if (!found)
            return def;
        if constexpr (std::is_floating_point_v<T>) {
            TString<char> text;
            m_input.ReadString(text);
            TComposeBuffer bytes(static_cast<unsigned>(Base64DecodedMaxSize(text.GetLength())) + sizeof(T));
            std::memset(bytes.Data(), 0, sizeof(T));
            DecodeBase64(text.c_str(), bytes.Data());
            T value;
            std::memcpy(&value, bytes.Data(), sizeof(T));
            return value;
        } else {
            long long const value = ReadDecimal();
            if constexpr (std::is_same_v<T, bool>)
                return value != 0;
            else
                return static_cast<T>(static_cast<TStored<T>>(value));
        }
    }
    if (UseRawTags() && !MoveToDataStart(tag, index, nullptr))
        return def;
    T value;
    if constexpr (std::is_same_v<T, bool>) {
        unsigned char byte = 0;
        m_input.Read(&byte, 1);
        value = byte != 0;
    } else {
        m_input.Read(&value, 1);
    }
    return value;
}

bool TTaggedInputStream::GetValue(bool def, char const* tag, int index)
{
    return GetNumber(def, tag, index);
}

char TTaggedInputStream::GetValue(char def, char const* tag, int index)
{
    return GetNumber(def, tag, index);
}

signed char TTaggedInputStream::GetValue(signed char def, char const* tag, int index)
{
    return GetNumber(def, tag, index);
}

unsigned char TTaggedInputStream::GetValue(unsigned char def, char const* tag, int index)
{
    return GetNumber(def, tag, index);
}

short TTaggedInputStream::GetValue(short def, char const* tag, int index)
{
    return GetNumber(def, tag, index);
}

unsigned short TTaggedInputStream::GetValue(unsigned short def, char const* tag, int index)
{
    return GetNumber(def, tag, index);
}

int TTaggedInputStream::GetValue(int def, char const* tag, int index)
{
    return GetNumber(def, tag, index);
}

unsigned int TTaggedInputStream::GetValue(unsigned int def, char const* tag, int index)
{
    return GetNumber(def, tag, index);
}

long TTaggedInputStream::GetValue(long def, char const* tag, int index)
{
    return GetNumber(def, tag, index);
}

unsigned long TTaggedInputStream::GetValue(unsigned long def, char const* tag, int index)
{
    return GetNumber(def, tag, index);
}

long long TTaggedInputStream::GetValue(long long def, char const* tag, int index)
{
    return GetNumber(def, tag, index);
}

unsigned long long TTaggedInputStream::GetValue(unsigned long long def, char const* tag, int index)
{
    return GetNumber(def, tag, index);
}

float TTaggedInputStream::GetValue(float def, char const* tag, int index)
{
    return GetNumber(def, tag, index);
}

double TTaggedInputStream::GetValue(double def, char const* tag, int index)
{
    return GetNumber(def, tag, index);
}

TString<char> TTaggedInputStream::GetValueA(char const* def, char const* tag, int index)
{
    if (!IsValid())
        return TString<char>(def);
    TString<char> text;
    if (UseRawTags() && !MoveToDataStart(tag, index, nullptr))
        return TString<char>(def);
    m_input.ReadString(text);
    if (m_xmlConvert && text.Contains('<')) {
        TString<char> const contents = CDataPattern().FindFirstCapture(text.c_str());
        if (contents.HasStuff())
            return contents;
    }
    return text;
}

QByteArray TTaggedInputStream::GetValueBS(char const* def, char const* tag, int index)
{
    TString<char> const text = GetValueA(def, tag, index);
    return QByteArray(text.c_str(), text.GetLength());
}

QByteArray TTaggedInputStream::GetValueBS(QByteArray const& def, char const* tag, int index)
{
    return GetValueBS(def.constData(), tag, index);
}

TString<char16_t> TTaggedInputStream::GetValue(char16_t const* def, char const* tag, int index)
{
    if (!IsValid())
        return TString<char16_t>(def);
    if (m_xmlConvert)
        return TString<char16_t>(GetValueA(TString<char>(def).c_str(), tag, index).c_str());
    if (UseRawTags() && !MoveToDataStart(tag, index, nullptr))
        return TString<char16_t>(def);
    TString<char16_t> text;
    m_input.ReadString(text);
    return text;
}

TString<char16_t> TTaggedInputStream::GetValue(TString<char16_t> const& def, char const* tag, int index)
{
    return GetValue(def.c_str(), tag, index);
}

QString TTaggedInputStream::GetValue(QString const& def, char const* tag, int index)
{
    TString<char> const text = GetValueA(def.toUtf8().constData(), tag, index);
    return QString::fromUtf8(text.c_str(), text.GetLength());
}

QUuid TTaggedInputStream::GetValue(QUuid const& def, char const* tag, int index)
{
    QByteArray const defBytes = def.toRfc4122();
    char bytes[16];
    GetBinary(bytes, defBytes.constData(), 16, tag, index);
    return QUuid::fromRfc4122(QByteArray::fromRawData(bytes, 16));
}

TString<char16_t> TTaggedInputStream::GetValue(char16_t const* def, char const* wideTag, char const* oldTag, int index)
{
    if (!IsValid())
        return TString<char16_t>(def);
    if (!UseRawTags()) {
        TString<char16_t> text;
        m_input.ReadString(text);
        return text;
    }
    if (ExistKey(wideTag, index, 0))
        return GetValue(def, wideTag, index);
    if (ExistKey(oldTag, index, 0))
        return TString<char16_t>(GetValueA("", oldTag, index).c_str());
    return TString<char16_t>();
}

TString<char16_t> TTaggedInputStream::GetStringCompat(char const* def, char const* oldTag, char const* newTag,
                                                      int index, bool* usedOld)
{
    bool const fresh = ExistKey(newTag, index, 0);
    if (usedOld)
        *usedOld = !fresh;
    if (fresh)
        return TString<char16_t>(GetValueA(def, newTag, index).c_str());
    TString<char16_t> text;
    text.SetFromDbcs(GetValueA(def, oldTag, index).c_str());
    return text;
}

QString TTaggedInputStream::GetStringCompat(QString const& def, char const* oldTag, char const* newTag, int index,
                                            bool* usedOld)
{
    bool const fresh = ExistKey(newTag, index, 0);
    if (usedOld)
        *usedOld = !fresh;
    if (fresh)
        return GetValue(def, newTag, index);
    TString<char> const text = GetValueA(def.toLocal8Bit().constData(), oldTag, index);
    return QString::fromLocal8Bit(text.c_str(), text.GetLength());
}

int TTaggedInputStream::GetBinary(void* out, void const* def, int size, char const* tag, int index)
{
    if (size < 0)
        size = 0;
    auto copyDefault = [&] {
        if (def && out && size > 0)
            std::memmove(out, def, static_cast<size_t>(size));
    };
    if (!IsValid()) {
        copyDefault();
        return size;
    }
    if (!UseRawTags()) {
        int stored = 0;
        m_input.Read(&stored, 1);
        unsigned int const length = stored > 0 ? static_cast<unsigned>(stored) : 0;
        // The caller's buffer holds size bytes; the rest is passed over.
        unsigned int const kept = length < static_cast<unsigned>(size) ? length : static_cast<unsigned>(size);
        unsigned int const position = m_input.GetPosition();
        if (out && kept)
            m_input.ReadData(out, kept);
        m_input.SetPosition(position + length > m_input.Size() ? m_input.Size() : position + length);
        return stored;
    }
    int node;
    if (!MoveToDataStart(tag, index, &node)) {
        copyDefault();
        return size;
    }
    if (m_xmlConvert) {
        TString<char> text;
        m_input.ReadString(text);
        TComposeBuffer bytes(static_cast<unsigned>(Base64DecodedMaxSize(text.GetLength())) + 1);
        int const decoded = DecodeBase64(text.c_str(), bytes.Data());
        if (out)
            std::memcpy(out, bytes.Data(), static_cast<size_t>(decoded < size ? decoded : size));
        return size;
    }
    int const stored = NodeDataSize(node);
    unsigned int const kept = static_cast<unsigned>(stored > 0 && stored < size ? stored : size);
    if (out && stored > 0) {
        // Past the block's end the bytes read as zeros.
        unsigned int const inside = m_input.GetSizeLeft() < kept ? m_input.GetSizeLeft() : kept;
        std::memcpy(out, m_input.GetHeadPointer(), inside);
        std::memset(static_cast<char*>(out) + inside, 0, kept - inside);
    }
    return size;
}

QByteArray TTaggedInputStream::GetBinary(QByteArray const& def, char const* tag, int index)
{
    int size = GetBinarySize(tag, index);
    if (size < 1)
        return def;
    // A stored size beyond the block can't be true: what the block holds is
    // read, and nothing is allocated for the rest.
    unsigned int const room = BinaryRoom(tag, index);
    if (static_cast<unsigned>(size) > room)
        size = static_cast<int>(room);
    if (size < 1)
        return def;
    QByteArray bytes(size, Qt::Uninitialized);
    GetBinary(bytes.data(), nullptr, size, tag, index);
    return bytes;
}

unsigned int TTaggedInputStream::BinaryRoom(char const* tag, int index) const
{
    if (m_xmlConvert)
        return 0x7FFFFFFF; // the decoded size is measured
    if (!UseRawTags())
        return m_input.GetSizeLeft() > 4 ? m_input.GetSizeLeft() - 4 : 0;
    int const node = Search(GetFormattedTag(tag), index, 2);
    unsigned int const dataAt = static_cast<unsigned>(node) + m_input.Start()[node + kNodeDataOffset];
    return node != 0 && dataAt < m_input.Size() ? m_input.Size() - dataAt : 0;
}

int TTaggedInputStream::GetBinarySize(char const* tag, int index)
{
    if (!IsValid())
        return 0;
    if (!UseRawTags()) {
        unsigned int const position = m_input.GetPosition();
        int stored = 0;
        m_input.Read(&stored, 1);
        m_input.SetPosition(position);
        return stored;
    }
    int const node = Search(GetFormattedTag(tag), index, 2);
    if (node == 0)
        return 0;
    if (!m_xmlConvert)
        return NodeDataSize(node);
    unsigned int const position = m_input.GetPosition();
    m_input.SetPosition(static_cast<unsigned>(node) + m_input.Start()[node + kNodeDataOffset]);
    TString<char> text;
    m_input.ReadString(text);
    m_input.SetPosition(position);
    TComposeBuffer bytes(static_cast<unsigned>(Base64DecodedMaxSize(text.GetLength())) + 1);
    return DecodeBase64(text.c_str(), bytes.Data());
}
