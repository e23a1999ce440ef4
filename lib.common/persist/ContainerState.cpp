// The tagged state of the containers: a group with the count "Siz" and the
// elements under "E" with their running number, each preceded by the name
// ("IDS") or number ("ID") of its class when it tells one, so that the
// factory can make the right class on the way back.

#include "core/TDoubleList.h"
#include "core/TFlexHashMapImp.h"
#include "core/TVectorBase.h"
#include "diag/LogCategories.h"
#include "persist/TTaggedInputStream.h"
#include "persist/TTaggedOutputStream.h"

namespace {

constexpr int kIdStringSize = 60;

void WriteClassId(TTaggedOutputStream& stream, int id, char const* idString, bool known, int n)
{
    if (!known)
        return;
    if (idString[0])
        stream.SetValue(idString, "IDS", n);
    else
        stream.SetValue(id, "ID", n);
}

// Reads the elements of an open group and hands each to add. Stops, with
// success, where the factory gives nothing or an element can't restore
// itself; that element is not added, and not deleted either: the factory
// may hand out objects it keeps.
template <class Add>
void RestoreElements(TTaggedInputStream& stream, long long context, TObjectFactory factory, Add add)
{
    int const count = stream.GetValue(0, "Siz");
    for (int n = 0; n < count; ++n) {
        int id = -1;
        TString<char> idString;
        if (stream.UseTags()) {
            idString = stream.GetValueA("", "IDS", n);
            id = stream.GetValue(-1, "ID", n);
        }
        TObject* element = factory(context, id, idString.c_str());
        if (!element)
            return;
        bool restored;
        {
            TScopedSearchPlace place(stream);
            restored = element->RestoreState(stream, context, "E", n);
        }
        if (!restored)
            return;
        add(element);
    }
}

} // namespace

void TDoubleList::WriteState(TTaggedOutputStream& stream, long long context, char const* tag, int index) const
{
    TScopedOutputGroup group(stream, tag, index);
    stream.SetValue(CountWritableElements(context), "Siz");
    char idString[kIdStringSize];
    int n = 0;
    for (TListElement* x = m_first; x; x = x->next) {
        if (!ElementCanWrite(*x, context))
            continue;
        int id = 0;
        bool const known = ElementClassId(*x, &id, idString);
        WriteClassId(stream, id, idString, known, n);
        x->WriteState(stream, context, "E", n);
        ++n;
    }
}

bool TDoubleList::RestoreState(TTaggedInputStream& stream, long long context, char const* tag, int index)
{
    TScopedInputGroup group(stream, tag, index);
    if (!group.Found())
        return false;
    if (!m_factory) {
        qCWarning(LogNoGoZone) << "TDoubleList::RestoreState" << 1;
        return true;
    }
    RestoreElements(stream, context, m_factory,
                    [this](TObject* element) { Append(static_cast<TListElement*>(element)); });
    return true;
}

void TVectorBase::WriteState(TTaggedOutputStream& stream, long long context, char const* tag, int index) const
{
    TScopedOutputGroup group(stream, tag, index);
    stream.SetValue(CountWritableElements(context), "Siz");
    char idString[kIdStringSize];
    // Every element goes out, also those left out of the count: a reader
    // sees only the first "Siz" of them.
    for (int n = 0; n < m_count; ++n) {
        TObject const* element = Data()[n];
        if (!element) {
            // No object to ask for its state.
            qCWarning(LogNoGoZone) << "TVectorBase::WriteState" << 1;
            continue;
        }
        int id = 0;
        bool const known = ElementClassId(*element, &id, idString);
        WriteClassId(stream, id, idString, known, n);
        element->WriteState(stream, context, "E", n);
    }
}

bool TVectorBase::RestoreState(TTaggedInputStream& stream, long long context, char const* tag, int index)
{
    TScopedInputGroup group(stream, tag, index);
    if (!group.Found())
        return false;
    if (!m_factory) {
        qCWarning(LogNoGoZone) << "TVectorBase::RestoreState" << 1;
        return true;
    }
    RestoreElements(stream, context, m_factory, [this](TObject* element) { Add(element); });
    return true;
}

bool TFlexHashMapImp::RestoreState(TTaggedInputStream& stream, long long context, char const* tag, int index)
{
    Clear();
    if (!TDoubleList::RestoreState(stream, context, tag, index))
        return false;
    Remap(-1, true);
    return true;
}
