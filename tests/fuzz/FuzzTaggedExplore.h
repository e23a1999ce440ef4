#pragma once

// Shared by the tagged reader's fuzz targets: reads everything a document
// names, the way a restore function would, by every getter.

#include "persist/TTaggedInputStream.h"

#include <QByteArray>
#include <QString>
#include <QUuid>
#include <QtGlobal>

#include <cstdint>
#include <cstring>
#include <set>
#include <string>
#include <vector>

namespace FuzzTagged {

// Damaged documents make the library warn; printed, that only slows down.
inline void Quiet(QtMsgType, QMessageLogContext const&, QString const&)
{
}

inline void InstallQuietHandler()
{
    static bool const installed = (qInstallMessageHandler(Quiet), true);
    (void)installed;
}

inline void ReadValue(TTaggedInputStream& in, char const* name, int index)
{
    // Wraps instead of overflowing: the values are whatever the input holds.
    volatile unsigned long long sink = 0;
    volatile double real = 0;
    auto add = [&](long long value) { sink = sink + static_cast<unsigned long long>(value); };
    add(in.GetValue(false, name, index));
    add(in.GetValue('c', name, index));
    add(in.GetValue(static_cast<unsigned char>(1), name, index));
    add(in.GetValue(static_cast<short>(2), name, index));
    add(in.GetValue(3, name, index));
    add(static_cast<long long>(in.GetValue(4UL, name, index)));
    add(in.GetValue(5LL, name, index));
    real = real + in.GetValue(6.0, name, index);
    real = real + in.GetValue(7.0f, name, index);
    add(in.GetValueA("d", name, index).GetLength());
    add(in.GetValue(u"w", name, index).GetLength());
    add(in.GetValue(QString(), name, index).size());
    add(in.GetValue(QUuid(), name, index).isNull());
    add(in.GetValue(u"w", name, "old", index).GetLength());
    bool usedOld = false;
    add(in.GetStringCompat("d", "old", name, index, &usedOld).GetLength());
    add(in.GetBinarySize(name, index));
    add(in.GetBinary(QByteArray("def"), name, index).size());
    char bytes[8];
    add(in.GetBinary(bytes, "12345678", 8, name, index));
    add(in.ExistKey(name, index, 0));
}

// The names of the current group's children, read with the same care as
// the reader: the fuzzer also reaches groups that are values in disguise.
inline std::vector<std::string> ChildNames(TTaggedInputStream& in, std::vector<bool>* groups)
{
    std::vector<std::string> names;
    unsigned char const* base = in.Start();
    unsigned int const size = in.Size();
    auto const group = static_cast<unsigned int>(in.GetCurrentGroup());
    if (!base || group == 0 || group + 20 > size)
        return names;
    int node;
    std::memcpy(&node, base + group + 12, 4);
    for (int steps = 0; node > 0 && steps < 64; ++steps) {
        auto const at = static_cast<unsigned int>(node);
        if (at % 4 != 0 || at + 8 > size)
            break;
        unsigned int const nameAt = at + base[at + 6];
        if (nameAt < size) {
            void const* zero = std::memchr(base + nameAt, 0, size - nameAt);
            if (zero) {
                names.emplace_back(reinterpret_cast<char const*>(base + nameAt));
                groups->push_back(base[at + 5] == 0);
            }
        }
        std::memcpy(&node, base + at, 4);
    }
    return names;
}

// Each group is explored once, and the reads have a budget: values that
// read as groups can lead back to groups already seen, which would make the
// walk itself exponential.
struct TExploration
{
    std::set<int> groups;
    int budget = 400;
};

inline void Explore(TTaggedInputStream& in, TExploration& state)
{
    if (!state.groups.insert(in.GetCurrentGroup()).second)
        return;
    std::vector<bool> groups;
    std::vector<std::string> const names = ChildNames(in, &groups);
    for (size_t i = 0; i < names.size() && state.budget > 0; ++i, --state.budget) {
        ReadValue(in, names[i].c_str(), 0);
        if (groups[i]) {
            TScopedInputGroup group(in, names[i].c_str(), 0);
            if (group.Found())
                Explore(in, state);
        }
    }
}

inline void Explore(TTaggedInputStream& in)
{
    TExploration state;
    Explore(in, state);
    in.ForEachGroup([](TTaggedInputStream* stream, char const*, int count, unsigned long long) {
        ReadValue(*stream, "v", count);
        return count < 16;
    }, 0);
    // Out of the group and back, through the parent links of whatever was
    // entered.
    TScopedSearchPlace place(in);
    in.MoveDown("/a/b");
    in.MoveUp();
    in.MoveUp();
    in.MoveUp();
    ReadValue(in, "x", 1);
}

// A plain document is read in order: a run of every kind of read.
inline void ReadPlain(TTaggedInputStream& in)
{
    for (int round = 0; round < 4; ++round)
        ReadValue(in, "", 0);
}

} // namespace FuzzTagged
