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

TEST(ObjectRoot, EachMissingOverrideWarnsWithItsPlace)
{
    Bare a, b;
    LogCapture log;
    EXPECT_EQ(a.Compare(b, 0), -1);
    EXPECT_EQ(a.CreateClone(nullptr), nullptr);
    EDefaultValues values = static_cast<EDefaultValues>(5);
    EXPECT_EQ(a.CreateDefault(nullptr, TOutParam<EDefaultValues>(&values)), nullptr);
    EXPECT_EQ(values, defaultValuesNone);
    EXPECT_FALSE(a.SetDefaultValues(defaultValuesNone, nullptr));
    EXPECT_EQ(a.GetHashedValue(), 0u);
    EXPECT_EQ(log.Lines(), (QStringList{"Log.NoGoZone: Compare 47", "Log.NoGoZone: CreateClone 53",
                                        "Log.NoGoZone: CreateDefault 55", "Log.NoGoZone: SetDefaultValues 57",
                                        "Log.NoGoZone: GetHashedValue 60"}));
}

TEST(ObjectRoot, IsEqualWithoutCompareWarnsOnceAndAnswersFalse)
{
    Bare a;
    LogCapture log;
    EXPECT_FALSE(a.IsEqual(a, 0));
    EXPECT_EQ(log.Lines(), QStringList{"Log.NoGoZone: Compare 47"});
}

TEST(ObjectRoot, SilentDefaults)
{
    Bare a;
    LogCapture log;
    int id = 42;
    char idString[60];
    std::memset(idString, 'x', sizeof idString);
    EXPECT_FALSE(a.GetClassId(&id, idString));
    EXPECT_EQ(id, 42);
    EXPECT_EQ(idString[0], 'x');
    EXPECT_TRUE(a.CanWrite(0));
    EXPECT_EQ(log.Count(), 0);
}

TEST(ObjectRoot, IsEqualFollowsCompare)
{
    Counted* a = new Counted(3);
    Counted* b = new Counted(3);
    Counted* c = new Counted(4);
    EXPECT_TRUE(a->IsEqual(*b, 0));
    EXPECT_FALSE(a->IsEqual(*c, 0));
    a->DeleteSelf();
    b->DeleteSelf();
    c->DeleteSelf();
}

TEST(ObjectRoot, DeleteSelfRunsTheVirtualDestructorAndIgnoresNull)
{
    int deaths = 0;
    TObject* object = new Counted(1, &deaths);
    object->DeleteSelf();
    EXPECT_EQ(deaths, 1);
    DeleteSelf(nullptr);
    DeleteSelf(new Counted(2, &deaths));
    EXPECT_EQ(deaths, 2);
}

TEST(ObjectRoot, AssignCloneVirtual)
{
    int deaths = 0;
    Counted* source = new Counted(7, &deaths);
    TObject* target = nullptr;

    __AssignCloneVirtual(source, &target);
    ASSERT_NE(target, nullptr);
    EXPECT_NE(target, source);
    EXPECT_EQ(static_cast<Counted*>(target)->value, 7);

    __AssignCloneVirtual(source, &target); // the old clone dies first
    EXPECT_EQ(deaths, 1);
    ASSERT_NE(target, nullptr);

    __AssignCloneVirtual(nullptr, &target);
    EXPECT_EQ(target, nullptr);
    EXPECT_EQ(deaths, 2);
    source->DeleteSelf();
}

TEST(ObjectRoot, PointerClonerSharesTheElement)
{
    int element = 0;
    EXPECT_EQ(CB_PointerCloner(&element, nullptr), &element);
}

TEST(ListElement, CopyCarriesTheSourceLinks)
{
    TListElement first, second, third;
    first.next = &second;
    second.prev = &first;
    second.next = &third;
    third.prev = &second;
    TListElement copy(second);
    EXPECT_EQ(copy.GetNext(), &third);
    EXPECT_EQ(copy.GetPrev(), &first);
    TListElement assigned;
    assigned = second;
    EXPECT_EQ(assigned.GetNext(), &third);
    EXPECT_EQ(TListElement().GetNext(), nullptr);
}

TEST(ObjectDestroyer, RunsActionsLastFirstAndOnlyOnce)
{
    std::string order;
    {
        TObjectDestroyer destroyer;
        destroyer.Add([&] { order += 'a'; });
        destroyer.Add([&] { order += 'b'; });
        destroyer.Add([&] { order += 'c'; });
        destroyer.DestroyAll();
        EXPECT_EQ(order, "cba");
        EXPECT_EQ(destroyer.Count(), 0);
        destroyer.DestroyAll();
        EXPECT_EQ(order, "cba");
        destroyer.Add([&] { order += 'd'; });
    }
    EXPECT_EQ(order, "cbad"); // the destructor runs what is left
}

TEST(ObjectDestroyer, EmptyActionRaisesBadFunctionCall)
{
    TObjectDestroyer destroyer;
    destroyer.Add(std::function<void()>());
    EXPECT_THROW(destroyer.DestroyAll(), std::bad_function_call);
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
    EXPECT_TRUE(BSaveOnDelete(true).Get());
    EXPECT_EQ((TUniqueId<TObject, int>(3).Value()), 3);
}
