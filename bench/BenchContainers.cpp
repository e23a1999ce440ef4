// Containers beside the standard library and Qt, on the same elements and
// the same (virtual) comparison: list and vector sorts, binary finds, the
// flex hash map, slot appends.

#include "core/TDoubleList.h"
#include "core/TFlexHashMap.h"
#include "core/TSlotSequence.h"
#include "core/TVectorBase.h"
#include "math/TRandomizer.h"

#include <QHash>
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <list>
#include <memory>
#include <unordered_map>
#include <vector>

namespace {

constexpr int kCount = 1000000;

// The containers reach Compare through the virtual table and so can never
// inline it; noinline keeps the peers from inlining it either, so that both
// sides make one real call per comparison.
class Keyed : public TListElement
{
public:
    explicit Keyed(int key = 0) : key(key) {}
    ~Keyed() override = default;
    __attribute__((noinline)) int Compare(TObject const& other, long long) const override
    {
        int const theirs = static_cast<Keyed const&>(other).key;
        return key < theirs ? -1 : (key > theirs ? 1 : 0);
    }
    int key;
};

class HashKeyed : public THashableElement
{
public:
    explicit HashKeyed(unsigned key = 0) : key(key) {}
    ~HashKeyed() override = default;
    __attribute__((noinline)) unsigned int GetHashedValue() const override { return key; }
    __attribute__((noinline)) bool IsEqual(TObject const& other, long long) const override
    {
        return key == static_cast<HashKeyed const&>(other).key;
    }
    unsigned key;
};

bool Less(Keyed const& a, Keyed const& b)
{
    return a.Compare(b, 0) < 0;
}

std::vector<int> RandomKeys(int count, uint64_t seed)
{
    TRandomizer random(seed);
    std::vector<int> keys(static_cast<size_t>(count));
    for (int& key : keys)
        key = static_cast<int>(random.Next32() >> 1);
    return keys;
}

// Distinct keys in a scrambled order.
std::vector<unsigned> HashKeys(int count)
{
    std::vector<unsigned> keys(static_cast<size_t>(count));
    for (size_t i = 0; i < keys.size(); ++i)
        keys[i] = static_cast<unsigned>(i) * 2654435761u;
    return keys;
}

// ---- list sort: both lists get new random keys in their current order
// before every run, so that both sort the same kind of scattered memory.

void ListSortCommon(benchmark::State& state)
{
    int const count = static_cast<int>(state.range(0));
    TDoubleList list(autoDeleteOn);
    for (int i = 0; i < count; ++i)
        list.Append(new Keyed());
    uint64_t seed = 1;
    for (auto _ : state) {
        state.PauseTiming();
        TRandomizer random(seed++);
        for (TListElement* e = list.GetFirst(); e; e = e->next)
            static_cast<Keyed*>(e)->key = static_cast<int>(random.Next32() >> 1);
        state.ResumeTiming();
        list.Sort();
    }
}

void ListSortStd(benchmark::State& state)
{
    int const count = static_cast<int>(state.range(0));
    std::list<Keyed> list(static_cast<size_t>(count));
    uint64_t seed = 1;
    for (auto _ : state) {
        state.PauseTiming();
        TRandomizer random(seed++);
        for (Keyed& e : list)
            e.key = static_cast<int>(random.Next32() >> 1);
        state.ResumeTiming();
        list.sort(Less);
    }
}

// ---- vector sort and binary find over pointers to the same objects.

std::vector<Keyed>& SharedObjects(int count)
{
    static std::vector<Keyed> objects;
    if (static_cast<int>(objects.size()) != count) {
        objects.clear();
        for (int key : RandomKeys(count, 7))
            objects.emplace_back(key);
    }
    return objects;
}

void VectorSortCommon(benchmark::State& state)
{
    int const count = static_cast<int>(state.range(0));
    std::vector<Keyed>& objects = SharedObjects(count);
    TVectorBase vector(count, 20, autoDeleteOff);
    for (Keyed& o : objects)
        vector.Add(&o);
    std::vector<TObject*> original(vector.ConstFirst(), vector.ConstEnd());
    for (auto _ : state) {
        state.PauseTiming();
        std::copy(original.begin(), original.end(), vector.First());
        state.ResumeTiming();
        vector.Sort();
    }
}

void VectorSortStd(benchmark::State& state)
{
    int const count = static_cast<int>(state.range(0));
    std::vector<Keyed>& objects = SharedObjects(count);
    std::vector<Keyed*> original;
    for (Keyed& o : objects)
        original.push_back(&o);
    std::vector<Keyed*> vector;
    for (auto _ : state) {
        state.PauseTiming();
        vector = original;
        state.ResumeTiming();
        std::sort(vector.begin(), vector.end(), [](Keyed const* a, Keyed const* b) { return a->Compare(*b, 0) < 0; });
    }
}

constexpr int kProbes = 4096;

void BinaryFindCommon(benchmark::State& state)
{
    int const count = static_cast<int>(state.range(0));
    std::vector<Keyed>& objects = SharedObjects(count);
    TVectorBase vector(count, 20, autoDeleteOff);
    for (Keyed& o : objects)
        vector.Add(&o);
    vector.Sort();
    std::vector<Keyed> probes;
    TRandomizer random(3);
    for (int i = 0; i < kProbes; ++i)
        probes.emplace_back(objects[static_cast<size_t>(random.Get(count))].key + (i & 1));
    for (auto _ : state) {
        int found = 0;
        for (Keyed const& probe : probes)
            found += vector.BinaryFindEqual(probe) != nullptr;
        benchmark::DoNotOptimize(found);
    }
    state.SetItemsProcessed(state.iterations() * kProbes);
}

void BinaryFindStd(benchmark::State& state)
{
    int const count = static_cast<int>(state.range(0));
    std::vector<Keyed>& objects = SharedObjects(count);
    std::vector<Keyed*> vector;
    for (Keyed& o : objects)
        vector.push_back(&o);
    auto less = [](Keyed const* a, Keyed const* b) { return a->Compare(*b, 0) < 0; };
    std::sort(vector.begin(), vector.end(), less);
    std::vector<Keyed> probes;
    TRandomizer random(3);
    for (int i = 0; i < kProbes; ++i)
        probes.emplace_back(objects[static_cast<size_t>(random.Get(count))].key + (i & 1));
    for (auto _ : state) {
        int found = 0;
        for (Keyed const& probe : probes) {
            auto at = std::lower_bound(vector.begin(), vector.end(), &probe, less);
            found += at != vector.end() && (*at)->Compare(probe, 0) == 0;
        }
        benchmark::DoNotOptimize(found);
    }
    state.SetItemsProcessed(state.iterations() * kProbes);
}

// ---- hash map: the flex map links elements that exist already; the peers
// make their nodes. Finds go in a shuffled order.

std::vector<HashKeyed>& HashElements(int count)
{
    static std::vector<HashKeyed> elements;
    if (static_cast<int>(elements.size()) != count) {
        elements.clear();
        for (unsigned key : HashKeys(count))
            elements.emplace_back(key);
    }
    return elements;
}

std::vector<unsigned> ShuffledKeys(int count)
{
    std::vector<unsigned> keys = HashKeys(count);
    TRandomizer random(11);
    for (int i = count - 1; i > 0; --i)
        std::swap(keys[static_cast<size_t>(i)], keys[static_cast<size_t>(random.Get(i + 1))]);
    return keys;
}

void HashAddCommon(benchmark::State& state)
{
    int const count = static_cast<int>(state.range(0));
    std::vector<HashKeyed>& elements = HashElements(count);
    for (auto _ : state) {
        TFlexHashMap<HashKeyed> map(0, autoDeleteOff);
        for (HashKeyed& e : elements)
            map.Add(&e);
        benchmark::DoNotOptimize(map.Count());
        state.PauseTiming();
        map.DetachAll();
        state.ResumeTiming();
    }
}

void HashAddQHash(benchmark::State& state)
{
    int const count = static_cast<int>(state.range(0));
    std::vector<HashKeyed>& elements = HashElements(count);
    for (auto _ : state) {
        auto map = std::make_unique<QHash<unsigned, HashKeyed*>>();
        for (HashKeyed& e : elements)
            map->insert(e.key, &e);
        benchmark::DoNotOptimize(map->size());
        state.PauseTiming();
        map.reset();
        state.ResumeTiming();
    }
}

void HashAddStd(benchmark::State& state)
{
    int const count = static_cast<int>(state.range(0));
    std::vector<HashKeyed>& elements = HashElements(count);
    for (auto _ : state) {
        auto map = std::make_unique<std::unordered_map<unsigned, HashKeyed*>>();
        for (HashKeyed& e : elements)
            map->emplace(e.key, &e);
        benchmark::DoNotOptimize(map->size());
        state.PauseTiming();
        map.reset();
        state.ResumeTiming();
    }
}

void HashFindCommon(benchmark::State& state)
{
    int const count = static_cast<int>(state.range(0));
    std::vector<HashKeyed>& elements = HashElements(count);
    TFlexHashMap<HashKeyed> map(0, autoDeleteOff);
    for (HashKeyed& e : elements)
        map.Add(&e);
    std::vector<unsigned> keys = ShuffledKeys(count);
    for (auto _ : state) {
        int found = 0;
        HashKeyed probe;
        for (unsigned key : keys) {
            probe.key = key;
            found += map.FindEqual(probe) != nullptr;
        }
        benchmark::DoNotOptimize(found);
    }
    map.DetachAll();
    state.SetItemsProcessed(state.iterations() * count);
}

void HashFindQHash(benchmark::State& state)
{
    int const count = static_cast<int>(state.range(0));
    std::vector<HashKeyed>& elements = HashElements(count);
    QHash<unsigned, HashKeyed*> map;
    for (HashKeyed& e : elements)
        map.insert(e.key, &e);
    std::vector<unsigned> keys = ShuffledKeys(count);
    for (auto _ : state) {
        int found = 0;
        for (unsigned key : keys)
            found += map.value(key) != nullptr;
        benchmark::DoNotOptimize(found);
    }
    state.SetItemsProcessed(state.iterations() * count);
}

void HashFindStd(benchmark::State& state)
{
    int const count = static_cast<int>(state.range(0));
    std::vector<HashKeyed>& elements = HashElements(count);
    std::unordered_map<unsigned, HashKeyed*> map;
    for (HashKeyed& e : elements)
        map.emplace(e.key, &e);
    std::vector<unsigned> keys = ShuffledKeys(count);
    for (auto _ : state) {
        int found = 0;
        for (unsigned key : keys)
            found += map.find(key) != map.end();
        benchmark::DoNotOptimize(found);
    }
    state.SetItemsProcessed(state.iterations() * count);
}

// ---- slot appends: the library's usual growth of 20 slots, then with the
// room reserved first as an owner adding many slots does.

void SlotAppendCommon(benchmark::State& state)
{
    int const count = static_cast<int>(state.range(0));
    for (auto _ : state) {
        TSlotSequence sequence(8, 20, 20);
        for (int64_t i = 0; i < count; ++i)
            *static_cast<int64_t*>(sequence.AppendSlot()) = i;
        benchmark::DoNotOptimize(sequence.GetFirstSlot());
    }
}

void SlotAppendStd(benchmark::State& state)
{
    int const count = static_cast<int>(state.range(0));
    for (auto _ : state) {
        std::vector<int64_t> vector;
        for (int64_t i = 0; i < count; ++i)
            vector.push_back(i);
        benchmark::DoNotOptimize(vector.data());
    }
}

void SlotAppendReservedCommon(benchmark::State& state)
{
    int const count = static_cast<int>(state.range(0));
    for (auto _ : state) {
        TSlotSequence sequence(8, 20, 20);
        sequence.EnsureNumSlots(count);
        for (int64_t i = 0; i < count; ++i)
            *static_cast<int64_t*>(sequence.AppendSlot()) = i;
        benchmark::DoNotOptimize(sequence.GetFirstSlot());
    }
}

void SlotAppendReservedStd(benchmark::State& state)
{
    int const count = static_cast<int>(state.range(0));
    for (auto _ : state) {
        std::vector<int64_t> vector;
        vector.reserve(static_cast<size_t>(count));
        for (int64_t i = 0; i < count; ++i)
            vector.push_back(i);
        benchmark::DoNotOptimize(vector.data());
    }
}

// ---- the slot sequence's sort is the C library's qsort; std::sort with the
// same comparison function shows what that costs.

int CompareInts(void const* a, void const* b)
{
    int const x = *static_cast<int const*>(a);
    int const y = *static_cast<int const*>(b);
    return x < y ? -1 : (x > y ? 1 : 0);
}

void SlotSortCommon(benchmark::State& state)
{
    int const count = static_cast<int>(state.range(0));
    std::vector<int> keys = RandomKeys(count, 5);
    TSlotSequence sequence(4, count, 20);
    sequence.AllocateBusySlots(count);
    auto comparer = &CompareInts;
    benchmark::DoNotOptimize(comparer);
    for (auto _ : state) {
        state.PauseTiming();
        std::copy(keys.begin(), keys.end(), static_cast<int*>(sequence.FirstSlot()));
        state.ResumeTiming();
        sequence.Sort(comparer);
    }
}

void SlotSortStd(benchmark::State& state)
{
    int const count = static_cast<int>(state.range(0));
    std::vector<int> keys = RandomKeys(count, 5);
    std::vector<int> vector;
    auto comparer = &CompareInts;
    benchmark::DoNotOptimize(comparer);
    for (auto _ : state) {
        state.PauseTiming();
        vector = keys;
        state.ResumeTiming();
        std::sort(vector.begin(), vector.end(), [comparer](int const& a, int const& b) { return comparer(&a, &b) < 0; });
    }
}

} // namespace

BENCHMARK(ListSortCommon)->Name("ListSort/common")->Arg(kCount)->Unit(benchmark::kMillisecond)->Iterations(6);
BENCHMARK(ListSortStd)->Name("ListSort/std_list")->Arg(kCount)->Unit(benchmark::kMillisecond)->Iterations(6);
BENCHMARK(VectorSortCommon)->Name("VectorSort/common")->Arg(kCount)->Unit(benchmark::kMillisecond)->Iterations(6);
BENCHMARK(VectorSortStd)->Name("VectorSort/std_sort")->Arg(kCount)->Unit(benchmark::kMillisecond)->Iterations(6);
BENCHMARK(BinaryFindCommon)->Name("BinaryFind/common")->Arg(kCount);
BENCHMARK(BinaryFindStd)->Name("BinaryFind/std_lower_bound")->Arg(kCount);
BENCHMARK(HashAddCommon)->Name("HashAdd/common")->Arg(kCount)->Unit(benchmark::kMillisecond);
BENCHMARK(HashAddQHash)->Name("HashAdd/QHash")->Arg(kCount)->Unit(benchmark::kMillisecond);
BENCHMARK(HashAddStd)->Name("HashAdd/std_unordered_map")->Arg(kCount)->Unit(benchmark::kMillisecond);
BENCHMARK(HashFindCommon)->Name("HashFind/common")->Arg(kCount)->Unit(benchmark::kMillisecond);
BENCHMARK(HashFindQHash)->Name("HashFind/QHash")->Arg(kCount)->Unit(benchmark::kMillisecond);
BENCHMARK(HashFindStd)->Name("HashFind/std_unordered_map")->Arg(kCount)->Unit(benchmark::kMillisecond);
BENCHMARK(SlotAppendCommon)->Name("SlotAppend/common")->Arg(kCount)->Unit(benchmark::kMillisecond);
BENCHMARK(SlotAppendStd)->Name("SlotAppend/std_vector")->Arg(kCount)->Unit(benchmark::kMillisecond);
BENCHMARK(SlotAppendReservedCommon)->Name("SlotAppendReserved/common")->Arg(kCount)->Unit(benchmark::kMillisecond);
BENCHMARK(SlotAppendReservedStd)->Name("SlotAppendReserved/std_vector")->Arg(kCount)->Unit(benchmark::kMillisecond);
BENCHMARK(SlotSortCommon)->Name("SlotSort/common")->Arg(kCount)->Unit(benchmark::kMillisecond);
BENCHMARK(SlotSortStd)->Name("SlotSort/std_sort")->Arg(kCount)->Unit(benchmark::kMillisecond);
