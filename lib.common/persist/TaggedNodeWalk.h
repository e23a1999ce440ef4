#pragma once

// Library-internal: what the lookups of the tagged writer and reader share:
// the steps of a group path, the spelling of the name they look for and the
// walk along sibling links.

#include "persist/TTaggedStream.h"
#include "text/TString.h"

#include <cstdint>
#include <cstring>

// The steps of a group path "a/b/c": a leading "/" sets group to root, empty
// pieces ("a//b", "a/") name no group, and the last piece takes the index.
// enter(name, index) takes one step and answers whether the walk goes on.
template <class Enter>
bool WalkGroupPath(char const* path, int index, int& group, int root, Enter enter)
{
    if (*path == '/') {
        group = root;
        ++path;
    }
    while (*path) {
        char const* slash = std::strchr(path, '/');
        size_t const length = slash ? static_cast<size_t>(slash - path) : std::strlen(path);
        if (length > 0) {
            bool const last = !slash || slash[1 + std::strspn(slash + 1, "/")] == 0;
            TString<char> const piece(path, length_t(static_cast<unsigned>(length)));
            if (!enter(piece.c_str(), last ? index : 0))
                return false;
        }
        if (!slash)
            break;
        path = slash + 1;
    }
    return true;
}

// The name a lookup searches for: the tag as it is for index 0, else the tag
// cut to kMaxIndexedTag characters and the decimal index.
class TLookupName
{
public:
    TLookupName(char const* tag, int index)
    {
        if (index == 0) {
            m_text = tag;
            m_length = static_cast<int>(std::strlen(tag));
            return;
        }
        m_length = TTaggedStream::SpellIndexedName(tag, index, m_buffer);
        m_buffer[m_length] = 0;
        m_text = m_buffer;
    }
    // The text may lie in the buffer.
    TLookupName(TLookupName const&) = delete;
    TLookupName& operator=(TLookupName const&) = delete;

    char const* Text() const { return m_text; }
    int Length() const { return m_length; }

private:
    char m_buffer[TTaggedStream::kMaxIndexedTag + 16];
    char const* m_text;
    int m_length;
};

// The first node named name (length bytes and a zero) along the next links
// from node, or 0. A link off the 4-byte grid or out of the size bytes ends
// the walk with 0, and so does the limit of steps, which also sets *more.
int WalkToName(unsigned char const* base, unsigned int size, int node, char const* name, int length,
               unsigned int limit, bool* more);
