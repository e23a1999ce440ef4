#pragma once

#include "core/CommonExport.h"
#include "persist/StreamEnums.h"
#include "persist/TMemoryStream.h"

#include <cstring>

// The three forms of a tagged document.
enum EStreamMode : int
{
    streamModePlain = 0, // values in call order, no names
    streamModeRawTags = 1, // a linked tree of named nodes
    streamModeXml = 2, // XML text
};

// What the writer and the reader of tagged documents share: the mode, the
// current group of the node tree and the search hint.
//
// A node starts on a multiple of 4; offsets count from the start of the
// document, 0 meaning none:
//   +0  next sibling (int)
//   +4  size of a small value's data (byte; 0 in a group and a big value)
//   +5  offset of the data from the node (byte; 0 makes the node a group)
//   +6  offset of the name from the node (byte): 20 group, 8 small, 12 big
//   +7  0
// A group then has its parent at +8, first child at +12 and last child at
// +16; a big value has its data size at +8.
class COMMON_EXPORT TTaggedStream
{
public:
    enum : int
    {
        kNodeNext = 0,
        kNodeSize = 4,
        kNodeDataOffset = 5,
        kNodeNameOffset = 6,
        kGroupParent = 8,
        kGroupFirstChild = 12,
        kGroupLastChild = 16,
        kBigValueSize = 8,
        kGroupNameOffset = 20,
        kSmallNameOffset = 8,
        kBigNameOffset = 12,
        // An indexed name keeps at most this much of its tag.
        kMaxIndexedTag = 200,
    };

    explicit TTaggedStream(EStreamMode mode);
    TTaggedStream(TTaggedStream const&) = delete;
    TTaggedStream& operator=(TTaggedStream const&) = delete;
    virtual ~TTaggedStream();

    // Whether the current group holds a node of that name (raw tags only).
    virtual bool ExistKey(char const* tag, int index, int hintMode) const;
    // The spelling a lookup uses; here the tag unchanged. An override may
    // answer with a buffer of its own, valid until the next call.
    virtual char const* GetFormattedTag(char const* tag) const;
    // Back to the parent group (raw tags only).
    virtual void MoveUp();

    EStreamMode GetStreamMode() const { return m_mode; }
    bool UseTags() const { return m_mode != streamModePlain; }
    bool UseRawTags() const { return m_mode == streamModeRawTags; }
    bool XML() const { return m_mode == streamModeXml; }
    EDataFormat GetDataFormat() const { return m_mode == streamModeXml ? dataFormatText : dataFormatBinary; }

    // Composite values remember the current group and put it back after
    // writing or reading their children.
    int GetCurrentGroup() const { return m_currentGroup; }
    void SetCurrentGroup(int group) { m_currentGroup = group; }
    int GetRootGroup() const { return m_root; }
    void GetSearchHint(int* lastFound, int* lastGroup) const
    {
        *lastFound = m_lastFound;
        *lastGroup = m_lastGroup;
    }
    void SetSearchHint(int lastFound, int lastGroup)
    {
        m_lastFound = lastFound;
        m_lastGroup = lastGroup;
    }

    // The raw spelling of a tag: what stands behind its first ":", or all.
    static char const* RawTagPart(char const* tag);
    // Writes tag cut to kMaxIndexedTag characters and the decimal index into
    // buffer (room for kMaxIndexedTag + 12) and returns the length. An index
    // of 0 is for the caller to spell: the whole tag, uncut.
    static int SpellIndexedName(char const* tag, int index, char* buffer);

protected:
    // The node of the current group named tag and index (tag taken as it
    // is), or 0. hintMode 0 walks from the first child; otherwise, when the
    // current group is the one of the last search, from behind the node
    // found then, and over from the first child if that finds nothing.
    // hintMode 1 stores the result as the new hint. Links that leave the
    // document end the walk.
    int FindNode(char const* tag, int index, int hintMode) const;

    unsigned char* Base() const { return m_stream ? m_stream->Start() : nullptr; }
    // The bytes that hold nodes: the block, or while writing the part
    // written so far.
    unsigned int DocumentSize() const;
    int ReadInt(int offset) const
    {
        int value;
        std::memcpy(&value, Base() + offset, 4);
        return value;
    }
    void WriteInt(int offset, int value) { std::memcpy(Base() + offset, &value, 4); }

    int m_root;
    int m_currentGroup;
    TMemoryStream* m_stream;
    mutable int m_lastFound;
    mutable int m_lastGroup;
    EStreamMode m_mode;
    bool m_growing;

private:
    int Walk(int node, char const* name, int length) const;
};
