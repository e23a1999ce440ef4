// Containers as a host uses them: takes of a session in an owning list,
// sorted by length, and markers found by name through the hash map.
#include "Demos.h"

#include <Common>

#include <cstdio>

namespace {

class TTakeEntry : public TListElement
{
public:
    TTakeEntry(char const* name, double seconds) : m_name(name), m_seconds(seconds) {}
    int Compare(TObject const& other, long long) const override
    {
        double const delta = m_seconds - static_cast<TTakeEntry const&>(other).m_seconds;
        return delta < 0 ? -1 : delta > 0 ? 1 : 0;
    }
    TString<char> m_name;
    double m_seconds;
};

class TMarker : public THashableElement
{
public:
    TMarker(char const* name, double seconds) : m_name(name), m_seconds(seconds) {}
    unsigned int GetHashedValue() const override { return m_name.GetHashValue(false, 0); }
    bool IsEqual(TObject const& other, long long) const override
    {
        return m_name.CompareWith(static_cast<TMarker const&>(other).m_name.c_str(), false) == 0;
    }
    TString<char> m_name;
    double m_seconds;
};

} // namespace

void ShowContainers()
{
    TFlexList<TTakeEntry> takes(autoDeleteOn); // the list owns and deletes its takes
    takes.Add(new TTakeEntry("Verse, take 1", 41.5));
    takes.Add(new TTakeEntry("Outro, take 4", 31.0));
    takes.Add(new TTakeEntry("Bridge, take 1", 12.25));
    TTakeEntry* chorus = takes.Add(new TTakeEntry("Chorus, take 2", 23.0));
    int const before = takes.FindIndexOfElement(chorus);
    int const after = takes.Sort(before);
    std::printf("  %d takes, shortest first (the chorus moved from %d to %d):\n", takes.Count(), before, after);
    for (TTakeEntry* take = takes.GetFirst(); take; take = static_cast<TTakeEntry*>(take->GetNext()))
        std::printf("    %-16s %6.2f s\n", take->m_name.c_str(), take->m_seconds);

    TFlexHashMap<TMarker> markers(0, autoDeleteOn);
    char const* names[] = {"Intro", "Verse", "Chorus", "Bridge", "Outro"};
    for (int i = 0; i < 5; ++i)
        markers.Add(new TMarker(names[i], 15.0 * i));
    TMarker key("CHORUS", 0);
    TMarker const* found = markers.FindEqual(key);
    std::printf("  marker \"chorus\" (any case) is at %.1f s; %d markers as the map holds them:",
                found ? found->m_seconds : -1.0, markers.Count());
    for (TMarker* marker = markers.GetFirst(); marker; marker = markers.GetNext(marker))
        std::printf(" %s", marker->m_name.c_str());
    std::printf("\n");
}
