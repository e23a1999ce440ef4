#include "persist/TTaggedStream.h"

#include "persist/TMemoryStream.h"

#include <charconv>
#include <cstdint>
#include <cstring>

TTaggedStream::TTaggedStream(EStreamMode mode)
    : m_root(0), m_currentGroup(0), m_stream(nullptr), m_lastFound(0), m_lastGroup(0), m_mode(mode),
      m_growing(false)
{
}

TTaggedStream::~TTaggedStream() = default;

char const* TTaggedStream::GetFormattedTag(char const* tag) const
{
    return tag;
}

bool TTaggedStream::ExistKey(char const* tag, int index, int hintMode) const
{
    return UseRawTags() && FindNode(GetFormattedTag(tag), index, hintMode) != 0;
}

void TTaggedStream::MoveUp()
{
    if (!UseRawTags() || m_currentGroup <= 0)
        return;
    // An offset that holds no group has no parent to go to.
    bool const inside = static_cast<unsigned>(m_currentGroup) + kGroupNameOffset <= DocumentSize();
    m_currentGroup = inside ? ReadInt(m_currentGroup + kGroupParent) : 0;
}

char const* TTaggedStream::RawTagPart(char const* tag)
{
    char const* colon = std::strchr(tag, ':');
    return colon ? colon + 1 : tag;
}

int TTaggedStream::SpellIndexedName(char const* tag, int index, char* buffer)
{
    size_t length = 0;
    while (length < kMaxIndexedTag && tag[length])
        ++length;
    std::memcpy(buffer, tag, length);
    char* end = std::to_chars(buffer + length, buffer + length + 12, index).ptr;
    return static_cast<int>(end - buffer);
}

unsigned int TTaggedStream::DocumentSize() const
{
    if (!m_stream)
        return 0;
    return m_growing ? m_stream->GetPosition() : m_stream->GetAllocatedSize();
}

int TTaggedStream::Walk(int node, char const* name, int length) const
{
    unsigned char const* base = Base();
    unsigned int const size = DocumentSize();
    uint32_t word = 0;
    std::memcpy(&word, name, length < 4 ? static_cast<size_t>(length) : 4);
    // Each node takes 8 bytes at least, so a longer walk is a loop.
    for (unsigned int steps = size / 8 + 1; node > 0 && steps > 0; --steps) {
        auto const at = static_cast<unsigned int>(node);
        if (at % 4 != 0 || at + 8 > size)
            return 0;
        unsigned int const nameAt = at + base[at + kNodeNameOffset];
        if (nameAt + 4 <= size) {
            uint32_t nodeWord;
            std::memcpy(&nodeWord, base + nameAt, 4);
            if (nodeWord == word && nameAt + static_cast<unsigned>(length) < size
                && std::memcmp(base + nameAt, name, static_cast<size_t>(length)) == 0 && base[nameAt + length] == 0)
                return node;
        }
        node = ReadInt(node + kNodeNext);
    }
    return 0;
}

int TTaggedStream::FindNode(char const* tag, int index, int hintMode) const
{
    if (!UseRawTags() || m_currentGroup <= 0 || !tag
        || static_cast<unsigned>(m_currentGroup) + kGroupNameOffset > DocumentSize())
        return 0;
    char buffer[kMaxIndexedTag + 16];
    char const* name = tag;
    int length;
    if (index != 0) {
        length = SpellIndexedName(tag, index, buffer);
        buffer[length] = 0;
        name = buffer;
    } else {
        length = static_cast<int>(std::strlen(tag));
    }
    int const firstChild = ReadInt(m_currentGroup + kGroupFirstChild);
    int found;
    if (hintMode != 0 && m_currentGroup == m_lastGroup && m_lastFound > 0
        && static_cast<unsigned>(m_lastFound) + 8 <= DocumentSize()) {
        found = Walk(ReadInt(m_lastFound + kNodeNext), name, length);
        if (found == 0)
            found = Walk(firstChild, name, length);
    } else {
        found = Walk(firstChild, name, length);
    }
    if (hintMode == 1) {
        m_lastFound = found;
        m_lastGroup = m_currentGroup;
    }
    return found;
}
