#include "persist/TTaggedStream.h"

#include "persist/TMemoryStream.h"
#include "persist/TaggedNodeWalk.h"

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
    unsigned int const size = DocumentSize();
    bool more;
    // Each node takes 8 bytes at least, so a longer walk is a loop.
    return WalkToName(Base(), size, node, name, length, size / 8 + 1, &more);
}

int TTaggedStream::FindNode(char const* tag, int index, int hintMode) const
{
    if (!UseRawTags() || m_currentGroup <= 0 || !tag
        || static_cast<unsigned>(m_currentGroup) + kGroupNameOffset > DocumentSize())
        return 0;
    TLookupName const name(tag, index);
    int const firstChild = ReadInt(m_currentGroup + kGroupFirstChild);
    int found;
    if (hintMode != 0 && m_currentGroup == m_lastGroup && m_lastFound > 0
        && static_cast<unsigned>(m_lastFound) + 8 <= DocumentSize()) {
        found = Walk(ReadInt(m_lastFound + kNodeNext), name.Text(), name.Length());
        if (found == 0)
            found = Walk(firstChild, name.Text(), name.Length());
    } else {
        found = Walk(firstChild, name.Text(), name.Length());
    }
    if (hintMode == 1) {
        m_lastFound = found;
        m_lastGroup = m_currentGroup;
    }
    return found;
}
