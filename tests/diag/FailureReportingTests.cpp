#include "diag/ECanException.h"
#include "diag/FailureReporting.h"
#include "diag/TBypassExceptionMessages.h"
#include "diag/TException.h"
#include "diag/TExceptionThrower.h"
#include "text/TString.h"

#include <QString>
#include <gtest/gtest.h>

#include <memory>
#include <thread>

namespace {

QString Text(TString<char16_t> const* text)
{
    return text ? text->qString() : QStringLiteral("<null>");
}

struct WarnRecord
{
    int calls = 0;
    QString message;
    unsigned code = 0;
    bool flag = false;
};
WarnRecord g_warned;

void RecordWarning(TException const& exception, bool flag)
{
    ++g_warned.calls;
    g_warned.message = Text(exception.Message());
    g_warned.code = exception.Code();
    g_warned.flag = flag;
}

class WarningCallback : public ::testing::Test
{
protected:
    void SetUp() override
    {
        g_warned = WarnRecord();
        SetWarnUserCallback(RecordWarning);
    }
    void TearDown() override { SetWarnUserCallback(nullptr); }
};

bool BuiltWithSanitizer()
{
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    return true;
#else
    return false;
#endif
}

} // namespace

TEST(TExceptionTexts, EmptyOrNullTextsLeaveNullPointers)
{
    EXPECT_EQ(TException(u"").Message(), nullptr);
    EXPECT_EQ(TException("").Message(), nullptr);
    EXPECT_EQ(TException(static_cast<char16_t const*>(nullptr)).Message(), nullptr);
    TException both(u"", u"", 7);
    EXPECT_EQ(both.Message(), nullptr);
    EXPECT_EQ(both.Detail(), nullptr);
    EXPECT_EQ(both.Code(), 7u);
    TException empty;
    EXPECT_EQ(empty.Message(), nullptr);
    EXPECT_EQ(empty.Detail(), nullptr);
    EXPECT_EQ(empty.Code(), 0u);
}

TEST(TExceptionTexts, NarrowTextsAreReadAsUtf8)
{
    TException exception("Caf\xC3\xA9", "d\xC3\xA9tail", 3);
    EXPECT_EQ(Text(exception.Message()), QString::fromUtf8("Caf\xC3\xA9"));
    EXPECT_EQ(Text(exception.Detail()), QString::fromUtf8("d\xC3\xA9tail"));
    EXPECT_EQ(exception.Code(), 3u);
}

TEST(TExceptionTexts, CopyOutlivesTheOriginal)
{
    auto original = std::make_unique<TException>(u"Cannot open", u"a.wav", 2u);
    TException copy(*original);
    TException assigned;
    assigned = *original;
    ASSERT_NE(copy.Message(), original->Message()); // separate objects
    original.reset();
    EXPECT_EQ(Text(copy.Message()), QStringLiteral("Cannot open"));
    EXPECT_EQ(Text(copy.Detail()), QStringLiteral("a.wav"));
    EXPECT_EQ(copy.Code(), 2u);
    EXPECT_EQ(Text(assigned.Message()), QStringLiteral("Cannot open"));
    EXPECT_EQ(Text(assigned.Detail()), QStringLiteral("a.wav"));
}

TEST(TExceptionThrowerTests, ThrowingModeThrowsEveryForm)
{
    TExceptionThrower thrower(false);
    try {
        thrower.SetAndThrow(QStringLiteral("Disk full"), QStringLiteral("b.wav"), 28u);
        FAIL() << "no throw";
    } catch (TException const& e) {
        EXPECT_EQ(Text(e.Message()), QStringLiteral("Disk full"));
        EXPECT_EQ(Text(e.Detail()), QStringLiteral("b.wav"));
        EXPECT_EQ(e.Code(), 28u);
    }
    EXPECT_THROW(thrower.SetAndThrow(), TException);
    EXPECT_THROW(thrower.SetAndThrow(u"x"), TException);
    EXPECT_THROW(thrower.SetAndThrow(u"x", 1u), TException);
    EXPECT_THROW(thrower.SetAndThrow(QStringLiteral("x"), 1u), TException);
    EXPECT_THROW(thrower.SetAndThrow(u"x", u"y"), TException);
    EXPECT_THROW(thrower.SetAndThrow(TException(u"x")), TException);
}

TEST(TExceptionThrowerTests, WarningModeWithoutCallbackReturnsSilently)
{
    SetWarnUserCallback(nullptr);
    EXPECT_NO_THROW(TExceptionThrower(true).SetAndThrow(u"x"));
    EXPECT_NO_THROW(TExceptionThrower(true).SetAndThrow());
}

TEST_F(WarningCallback, WarningModeCallsTheCallbackAndReturns)
{
    TExceptionThrower(true).SetAndThrow(QStringLiteral("Cannot save"), 5u);
    EXPECT_EQ(g_warned.calls, 1);
    EXPECT_EQ(g_warned.message, QStringLiteral("Cannot save"));
    EXPECT_EQ(g_warned.code, 5u);
    EXPECT_TRUE(g_warned.flag);
}

TEST_F(WarningCallback, BypassScopeSilencesOnlyItsOwnThread)
{
    TBypassExceptionMessages bypass(true);
    TExceptionThrower(true).SetAndThrow(u"here");
    EXPECT_EQ(g_warned.calls, 0);
    std::thread other([] { TExceptionThrower(true).SetAndThrow(u"there"); });
    other.join();
    EXPECT_EQ(g_warned.calls, 1);
    EXPECT_EQ(g_warned.message, QStringLiteral("there"));
}

TEST_F(WarningCallback, ArgumentlessFormIgnoresTheBypass)
{
    TBypassExceptionMessages bypass(true);
    TExceptionThrower(true).SetAndThrow();
    EXPECT_EQ(g_warned.calls, 1);
    EXPECT_EQ(g_warned.message, QStringLiteral("<null>"));
}

TEST_F(WarningCallback, ScopesDoNotNest)
{
    TBypassExceptionMessages outer(true);
    {
        TBypassExceptionMessages inner(true);
        TExceptionThrower(true).SetAndThrow(u"inner");
        EXPECT_EQ(g_warned.calls, 0);
    }
    // The inner scope removed the thread's only entry.
    TExceptionThrower(true).SetAndThrow(u"rest of outer");
    EXPECT_EQ(g_warned.calls, 1);
}

TEST_F(WarningCallback, DisabledScopeChangesNothing)
{
    TBypassExceptionMessages bypass(true);
    {
        TBypassExceptionMessages disabled(false);
    }
    TExceptionThrower(true).SetAndThrow(u"still bypassed");
    EXPECT_EQ(g_warned.calls, 0);
}

TEST(OutOfMemory, ThrowIfNoMemoryThrowsTheOneMessage)
{
    EXPECT_NO_THROW(ThrowIfNoMemory(&g_warned));
    try {
        ThrowIfNoMemory(nullptr);
        FAIL() << "no throw";
    } catch (TException const& e) {
        EXPECT_EQ(Text(e.Message()), QStringLiteral("Out of memory"));
        EXPECT_EQ(e.Detail(), nullptr);
        EXPECT_EQ(e.Code(), 0u);
    }
}

TEST(OutOfMemory, NewThrowsTException)
{
    if (BuiltWithSanitizer())
        GTEST_SKIP() << "the sanitizers' allocators abort on impossible sizes";
    volatile size_t impossible = size_t(1) << 62;
    // Through a volatile pointer: the compiler may not drop the allocation.
    char* volatile block = nullptr;
    EXPECT_THROW(block = new char[impossible], TException);
    delete[] block;
}
