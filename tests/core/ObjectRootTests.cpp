#include "LogCapture.h"

#include "core/TListElement.h"
#include "core/TObject.h"
#include "core/TObjectDestroyer.h"
#include "core/TStrongBool.h"
#include "core/TUniqueId.h"

#include <gtest/gtest.h>

#include <cstring>
#include <functional>
#include <string>
#include <type_traits>

namespace {

// Overrides nothing: every default answers.
class Bare : public TObject
{
public:
    ~Bare() override = default;
};

class Counted : public TObject
{
public:
    explicit Counted(int value, int* deaths = nullptr) : value(value), deaths(deaths) {}
    TObject* CreateClone(void*) const override { return new Counted(value, deaths); }
    int Compare(TObject const& other, long long) const override
    {
        return value - static_cast<Counted const&>(other).value;
    }
    int value;
    int* deaths;

protected:
    ~Counted() override
    {
        if (deaths)
            ++*deaths;
    }
};

} // namespace

TEST(ObjectRoot, EachMissingOverrideWarnsWithItsPlaceAndTheRestStaySilent)
{
    Bare a, b;
    LogCapture log;
    EXPECT_EQ(a.Compare(b, 0), -1);
    EXPECT_FALSE(a.IsEqual(a, 0)); // through Compare: one more warning
    EXPECT_EQ(a.CreateClone(nullptr), nullptr);
    EDefaultValues values = static_cast<EDefaultValues>(5);
    EXPECT_EQ(a.CreateDefault(nullptr, TOutParam<EDefaultValues>(&values)), nullptr);
    EXPECT_EQ(values, defaultValuesNone);
    EXPECT_FALSE(a.SetDefaultValues(defaultValuesNone, nullptr));
    EXPECT_EQ(a.GetHashedValue(), 0u);
    EXPECT_EQ(log.Lines(), (QStringList{"Log.NoGoZone: Compare 47", "Log.NoGoZone: Compare 47",
                                        "Log.NoGoZone: CreateClone 53", "Log.NoGoZone: CreateDefault 55",
                                        "Log.NoGoZone: SetDefaultValues 57", "Log.NoGoZone: GetHashedValue 60"}));
    log.Clear();
    int id = 42;
    char idString[60];
    std::memset(idString, 'x', sizeof idString);
    EXPECT_FALSE(a.GetClassId(&id, idString));
    EXPECT_EQ(id, 42);
    EXPECT_EQ(idString[0], 'x');
    EXPECT_TRUE(a.CanWrite(0));
    EXPECT_EQ(log.Count(), 0);
}

TEST(ObjectRoot, IsEqualFollowsCompareAndClonesAreAssignedVirtually)
{
    int deaths = 0;
    Counted* source = new Counted(7, &deaths);
    Counted* same = new Counted(7);
    Counted* other = new Counted(8);
    EXPECT_TRUE(source->IsEqual(*same, 0));
    EXPECT_FALSE(source->IsEqual(*other, 0));
    same->DeleteSelf();
    DeleteSelf(other);
    DeleteSelf(nullptr);

    TObject* target = nullptr;
    __AssignCloneVirtual(source, &target);
    ASSERT_NE(target, nullptr);
    EXPECT_NE(target, source);
    EXPECT_EQ(static_cast<Counted*>(target)->value, 7);
    __AssignCloneVirtual(source, &target); // the old clone dies first, through the virtual destructor
    EXPECT_EQ(deaths, 1);
    ASSERT_NE(target, nullptr);
    __AssignCloneVirtual(nullptr, &target);
    EXPECT_EQ(target, nullptr);
    EXPECT_EQ(deaths, 2);
    source->DeleteSelf();
    EXPECT_EQ(deaths, 3);
}

TEST(ListElement, CopyCarriesTheSourceLinks)
{
    TListElement first, second, third;
    second.prev = &first;
    second.next = &third;
    TListElement copy(second);
    TListElement assigned;
    assigned = second;
    for (TListElement const* e : {&copy, &assigned}) {
        EXPECT_EQ(e->GetNext(), &third);
        EXPECT_EQ(e->GetPrev(), &first);
    }
    EXPECT_EQ(TListElement().GetNext(), nullptr);
}

TEST(ObjectDestroyer, RunsActionsLastFirstAndOnlyOnce)
{
    std::string order;
    {
        TObjectDestroyer destroyer;
        for (char c : {'a', 'b', 'c'})
            destroyer.Add([&order, c] { order += c; });
        destroyer.DestroyAll();
        EXPECT_EQ(order, "cba");
        EXPECT_EQ(destroyer.Count(), 0);
        destroyer.DestroyAll();
        EXPECT_EQ(order, "cba");
        destroyer.Add([&] { order += 'd'; });
    }
    EXPECT_EQ(order, "cbad"); // the destructor runs what is left

    TObjectDestroyer empty;
    empty.Add(std::function<void()>());
    EXPECT_THROW(empty.DestroyAll(), std::bad_function_call);
}

TEST(CallingStyle, FlagsAndIdsDoNotConvertImplicitly)
{
    static_assert(!std::is_convertible_v<bool, BSaveOnDelete>);
    static_assert(!std::is_convertible_v<BSaveOnDelete, bool>);
    static_assert(!std::is_convertible_v<BSaveOnDelete, BDebugVersion>);
    static_assert(sizeof(BSaveOnDelete) == sizeof(bool));
    static_assert(!std::is_convertible_v<int, TUniqueId<TObject, int>>);
    static_assert(!std::is_convertible_v<TUniqueId<TObject, int>, TUniqueId<TListElement, int>>);
    static_assert(sizeof(TOutParam<int>) == sizeof(int*));
}
