#include "text/TStringNode.h"

TStringNode::TStringNode(TString<char16_t> const& word, bool endsPhrase, int value, TStringNode* parent)
    : m_word(word), m_endsPhrase(endsPhrase), m_value(value), m_parent(parent)
{
}

TStringNode::TStringNode(TStringNode const& other)
    : TListElement(), m_word(other.m_word), m_endsPhrase(other.m_endsPhrase), m_value(other.m_value),
      m_parent(nullptr)
{
    for (TStringNode const* child = other.GetFirstChild(); child; child = child->GetNextSibling()) {
        auto* copy = new TStringNode(*child);
        copy->m_parent = this;
        m_children.Append(copy);
    }
}

int TStringNode::GetDepth() const
{
    int depth = 0;
    for (TStringNode const* node = m_parent; node; node = node->m_parent)
        ++depth;
    return depth;
}

TStringNode* TStringNode::FindNode(char16_t const* word, bool caseSensitive) const
{
    if (!word)
        word = g_nullWchar;
    for (TStringNode* child = GetFirstChild(); child; child = child->GetNextSibling())
        if (child->m_word.CompareWith(word, caseSensitive) == 0)
            return child;
    return nullptr;
}

TStringNode* TStringNode::FindBranch(TVector<TString<char16_t>> const& words, int from, bool caseSensitive) const
{
    auto* node = const_cast<TStringNode*>(this);
    for (int i = from < 0 ? 0 : from; node && i < words.Count(); ++i)
        node = node->FindNode(words[i].c_str(), caseSensitive);
    return node;
}

TStringNode* TStringNode::AddBranch(TVector<TString<char16_t>> const& words, int from, int value)
{
    TStringNode* node = this;
    for (int i = from < 0 ? 0 : from; i < words.Count(); ++i) {
        TStringNode* child = node->FindNode(words[i].c_str(), true);
        if (!child)
            child = static_cast<TStringNode*>(node->m_children.InsertInSortedList(new TStringNode(words[i], false, 0, node)));
        node = child;
    }
    if (node != this) {
        node->m_endsPhrase = true;
        node->m_value = value;
    }
    return node;
}

bool TStringNode::ForEach(TVisit visit, bool recursive, void* data) const
{
    for (TStringNode* child = GetFirstChild(); child; child = child->GetNextSibling()) {
        if (!visit(*child, data))
            return false;
        if (recursive && !child->ForEach(visit, true, data))
            return false;
    }
    return true;
}

int TStringNode::Compare(TObject const& other, long long) const
{
    auto const& node = static_cast<TStringNode const&>(other);
    int const order = m_word.CompareWith(node.m_word.c_str(), false);
    return order != 0 ? order : m_word.CompareWith(node.m_word.c_str(), true);
}

TObject* TStringNode::CreateClone(void*) const
{
    return new TStringNode(*this);
}
