#pragma once

// The document both tagged-stream benchmarks use: 100,000 values of mixed
// types in nested groups of 10 to 100 values, as a list of writing steps made
// from a fixed seed, and the library's writer run over them.

#include "math/TRandomizer.h"
#include "persist/TTaggedOutputStream.h"

#include <QByteArray>

#include <vector>

namespace TaggedBench {

constexpr int kValues = 100000;

enum EStep : int
{
    eDown,
    eUp,
    eInt,
    eDouble,
    eText,
    eBool,
    eInt64,
};

struct TStep
{
    EStep kind;
    int index;
    int value; // the number, the text's place in the pool, or the depth of a group
};

inline double DoubleOf(int value)
{
    return value * 0.001;
}

inline void AddGroup(std::vector<TStep>& steps, TRandomizer& random, int textCount, int& values, int depth, int index)
{
    steps.push_back({eDown, index, depth});
    int const count = 10 + random.Get(91);
    for (int n = 0; n < count && values < kValues; ++n) {
        if (depth == 0 && n == count / 2 && random.Get(2) == 0)
            AddGroup(steps, random, textCount, values, 1, n);
        // Objects write their fields in a fixed order: the types repeat.
        EStep const kind = EStep(eInt + n % 5);
        steps.push_back({kind, n, kind == eText ? random.Get(textCount) : int(random.Next32())});
        ++values;
    }
    steps.push_back({eUp, 0, 0});
}

// The steps of groups "group", "group1" ... until kValues values are planned;
// each new group is announced to onGroup with its number first.
template <class OnGroup>
std::vector<TStep> MakeSteps(int textCount, OnGroup onGroup)
{
    std::vector<TStep> steps;
    TRandomizer random(2024);
    int values = 0;
    for (int group = 0; values < kValues; ++group) {
        onGroup(group);
        AddGroup(steps, random, textCount, values, 0, group);
    }
    return steps;
}

inline void WriteSteps(TTaggedOutputStream& stream, std::vector<TStep> const& steps, std::vector<QByteArray> const& texts)
{
    for (TStep const& step : steps) {
        switch (step.kind) {
        case eDown:
            stream.MoveDown(step.value == 0 ? "group" : "inner", step.index);
            break;
        case eUp:
            stream.MoveUp();
            break;
        case eInt:
            stream.SetValue(step.value, "v", step.index);
            break;
        case eDouble:
            stream.SetValue(DoubleOf(step.value), "v", step.index);
            break;
        case eText:
            stream.SetValue(texts[size_t(step.value)].constData(), "v", step.index);
            break;
        case eBool:
            stream.SetValue((step.value & 1) != 0, "v", step.index);
            break;
        case eInt64:
            stream.SetValue(static_cast<long long>(step.value) << 20, "v", step.index);
            break;
        }
    }
}

} // namespace TaggedBench
