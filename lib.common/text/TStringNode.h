#pragma once

#include "core/TDoubleList.h"
#include "core/TListElement.h"
#include "core/TVector.h"
#include "text/TString.h"

// A node of a tree of words, as menus, commands or phrases are kept: each
// node holds one word, its children the words that may follow it, in order
// by Compare. A node that ends a phrase carries a value. Children belong to
// their parent.
class COMMON_EXPORT TStringNode : public TListElement
{
public:
    using TVisit = bool (*)(TStringNode& node, void* data);

    explicit TStringNode(TString<char16_t> const& word, bool endsPhrase = false, int value = 0,
                         TStringNode* parent = nullptr);
    // A deep copy without a parent.
    TStringNode(TStringNode const& other);
    TStringNode& operator=(TStringNode const&) = delete;
    ~TStringNode() override = default;

    TString<char16_t> const& GetWord() const { return m_word; }
    bool EndsPhrase() const { return m_endsPhrase; }
    int GetValue() const { return m_value; }
    void SetValue(int value) { m_value = value; }
    TStringNode* GetParent() const { return m_parent; }
    int GetChildCount() const { return m_children.Count(); }
    TStringNode* GetFirstChild() const { return static_cast<TStringNode*>(m_children.GetFirst()); }
    TStringNode* GetNextSibling() const { return static_cast<TStringNode*>(next); }
    int GetDepth() const;

    // The child holding word, or null.
    TStringNode* FindNode(char16_t const* word, bool caseSensitive) const;
    // The node reached by following words[from..] down from here, or null.
    TStringNode* FindBranch(TVector<TString<char16_t>> const& words, int from, bool caseSensitive) const;
    // Follows words[from..] down from here, adding the nodes that are
    // missing (words match by case), and marks the last one as the end of a
    // phrase with value. Returns that node; this one when nothing is left.
    TStringNode* AddBranch(TVector<TString<char16_t>> const& words, int from, int value);
    // Calls visit on each child in order, and with recursive on each child's
    // descendants before the next child. Stops at the first false, and
    // returns false then.
    bool ForEach(TVisit visit, bool recursive, void* data) const;

    // Siblings: by word without regard to case, then by character value.
    int Compare(TObject const& other, long long mode) const override;
    TObject* CreateClone(void* context) const override;

private:
    TString<char16_t> m_word;
    bool m_endsPhrase;
    int m_value;
    TStringNode* m_parent;
    // A plain list: a TFlexList of the class being defined can't be a member.
    TDoubleList m_children{autoDeleteOn};
};
