#pragma once

#include "core/TBuffer.h"
#include "core/TVector.h"
#include "text/TString.h"

// A small table of tagged texts: parallel vectors of tags, value kinds and
// values. SetTagString gives every new entry the kind "s".
//
// External form (InitFromBuffer, SetBuffer, Externalize), UTF-8 text with
// one entry a line:
//     tag TAB kind TAB value LF
// In each field a backslash escapes: "\\" "\t" "\n" "\r" "\0", and in the
// wide form "\uXXXX" (four hex digits) for a UTF-16 unit that isn't part of
// a valid pair, so that every wide text survives. The narrow form keeps its
// bytes as they are. A CR in front of an LF is ignored, the last LF may be
// missing, and an empty buffer is the empty set.
template <class T>
class COMMON_EXPORT TTagStringSet
{
public:
    TTagStringSet() = default;
    // Tags are compared with or without regard to case.
    explicit TTagStringSet(bool caseSensitiveTags) : m_caseSensitiveTags(caseSensitiveTags) {}
    // As InitFromBuffer; a bad buffer leaves the set empty.
    TTagStringSet(char const* buffer, int size) { InitFromBuffer(buffer, size); }

    int Count() const { return m_tags.Count(); }
    bool IsEmpty() const { return m_tags.IsEmpty(); }
    void Clear();

    // The empty string for an index out of range.
    TString<T> const& GetTag(int index) const;
    TString<T> const& GetKind(int index) const;
    TString<T> const& GetString(int index) const;

    // Replaces the value of an existing tag, or appends an entry of kind "s".
    // Returns the entry's index.
    int SetTagString(T const* tag, T const* value);
    // Replaces from by to in the value of tag; returns the replacements.
    int ReplaceString(T const* tag, T const* from, T const* to);
    // The same in the values whose kind is that one character; 0 for all.
    int ReplaceInAllStrings(char kind, T const* from, T const* to);
    // The value of tag, empty when absent; index (if given) gets the entry's
    // index or -1.
    TString<T> GetStringFromTag(T const* tag, int* index = nullptr) const;
    int GetTagIndex(T const* tag) const;
    // Ignores an index out of range.
    void Remove(int index);

    // Replaces the content by the entries of the external form. A malformed
    // buffer is refused whole: false, and the set is as it was.
    bool InitFromBuffer(char const* buffer, int size);
    // The external form, in a buffer of exactly its bytes, no terminator.
    void SetBuffer(TBuffer<char>& buffer) const;
    TString<char> Externalize() const;

private:
    TVector<TString<T>> m_tags;
    TVector<TString<T>> m_kinds;
    TVector<TString<T>> m_values;
    bool m_caseSensitiveTags = true;
};

extern template class COMMON_EXPORT TTagStringSet<char>;
extern template class COMMON_EXPORT TTagStringSet<char16_t>;
