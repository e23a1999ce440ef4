#include "diag/ECanException.h"
#include "diag/FailureReporting.h"
#include "diag/TBypassExceptionMessages.h"
#include "diag/TException.h"
#include "diag/TExceptionThrower.h"
#include "text/TString.h"

#include <QString>
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <thread>
#include <vector>

namespace {

QString Text(TString<char16_t> const* text)
{
    return text ? text->qString() : QStringLiteral("<null>");
}

// Message, detail and code, as one line.
QString Describe(TException const& e)
{
    return Text(e.Message()) + '|' + Text(e.Detail()) + '|' + QString::number(e.Code());
}

struct WarnRecord
{
    int calls = 0;
    QString exception;
    bool flag = false;
};
WarnRecord g_warned;

void RecordWarning(TException const& exception, bool flag)
{
    ++g_warned.calls;
    g_warned.exception = Describe(exception);
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
    static void Warn(char16_t const* message) { TExceptionThrower(true).SetAndThrow(message); }
};

// Every form of SetAndThrow, with what its exception carries.
struct ThrowForm
{
    std::function<void(TExceptionThrower&)> call;
    char const* carried;
};

std::vector<ThrowForm> const g_forms = {
    {[](TExceptionThrower& t) { t.SetAndThrow(); }, "<null>|<null>|0"},
    {[](TExceptionThrower& t) { t.SetAndThrow(TException(u"m", u"d", 4u)); }, "m|d|4"},
    {[](TExceptionThrower& t) { t.SetAndThrow(u"m"); }, "m|<null>|0"},
    {[](TExceptionThrower& t) { t.SetAndThrow(QStringLiteral("m")); }, "m|<null>|0"},
    {[](TExceptionThrower& t) { t.SetAndThrow(u"m", u"d"); }, "m|d|0"},
    {[](TExceptionThrower& t) { t.SetAndThrow(u"m", 1u); }, "m|<null>|1"},
    {[](TExceptionThrower& t) { t.SetAndThrow(QStringLiteral("m"), 5u); }, "m|<null>|5"},
    {[](TExceptionThrower& t) { t.SetAndThrow(u"m", u"d", 2u); }, "m|d|2"},
    {[](TExceptionThrower& t) { t.SetAndThrow(QStringLiteral("Disk full"), QStringLiteral("b.wav"), 28u); },
     "Disk full|b.wav|28"},
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

TEST(TExceptionTexts, EmptyTextsAreNullNarrowOnesUtf8AndCopiesOwnTheirs)
{
    EXPECT_EQ(Describe(TException(u"")), "<null>|<null>|0");
    EXPECT_EQ(Describe(TException("")), "<null>|<null>|0");
    EXPECT_EQ(Describe(TException(static_cast<char16_t const*>(nullptr))), "<null>|<null>|0");
    EXPECT_EQ(Describe(TException(u"", u"", 7)), "<null>|<null>|7");
    EXPECT_EQ(Describe(TException()), "<null>|<null>|0");
    EXPECT_EQ(Describe(TException("Caf\xC3\xA9", "d\xC3\xA9tail", 3)), QString::fromUtf8("Café|détail|3"));

    auto original = std::make_unique<TException>(u"Cannot open", u"a.wav", 2u);
    TException copy(*original);
    TException assigned;
    assigned = *original;
    ASSERT_NE(copy.Message(), original->Message()); // separate objects
    original.reset();
    EXPECT_EQ(Describe(copy), "Cannot open|a.wav|2");
    EXPECT_EQ(Describe(assigned), "Cannot open|a.wav|2");
}

TEST_F(WarningCallback, EveryFormThrowsOrWarnsWithWhatItWasGiven)
{
    for (ThrowForm const& form : g_forms) {
        SCOPED_TRACE(form.carried);
        TExceptionThrower throwing(false);
        try {
            form.call(throwing);
            ADD_FAILURE() << "no throw";
        } catch (TException const& e) {
            EXPECT_EQ(Describe(e), form.carried);
        }
        EXPECT_EQ(g_warned.calls, 0);

        TExceptionThrower warning(true);
        form.call(warning);
        EXPECT_EQ(g_warned.calls, 1);
        EXPECT_EQ(g_warned.exception, form.carried);
        EXPECT_TRUE(g_warned.flag);
        g_warned = WarnRecord();
    }
    // Without a callback a warning goes nowhere.
    SetWarnUserCallback(nullptr);
    for (ThrowForm const& form : g_forms) {
        TExceptionThrower warning(true);
        EXPECT_NO_THROW(form.call(warning)) << form.carried;
    }
}

TEST_F(WarningCallback, BypassScopesSilenceOnlyTheirThreadAndDoNotNest)
{
    {
        TBypassExceptionMessages bypass(true);
        Warn(u"here");
        EXPECT_EQ(g_warned.calls, 0);
        std::thread other([] { Warn(u"there"); });
        other.join();
        EXPECT_EQ(g_warned.calls, 1);
        EXPECT_EQ(g_warned.exception, "there|<null>|0");

        TExceptionThrower(true).SetAndThrow(); // the argumentless form ignores the bypass
        EXPECT_EQ(g_warned.calls, 2);
        {
            TBypassExceptionMessages disabled(false);
        }
        Warn(u"still bypassed");
        EXPECT_EQ(g_warned.calls, 2);
        {
            TBypassExceptionMessages inner(true);
        }
        // The inner scope removed the thread's only entry.
        Warn(u"rest of outer");
        EXPECT_EQ(g_warned.calls, 3);
    }
    EXPECT_FALSE(TBypassExceptionMessages::IsCurrentThreadBypassed());
}

TEST(OutOfMemory, ThrowIfNoMemoryAndNewThrowTheOneMessage)
{
    EXPECT_NO_THROW(ThrowIfNoMemory(&g_warned));
    try {
        ThrowIfNoMemory(nullptr);
        ADD_FAILURE() << "no throw";
    } catch (TException const& e) {
        EXPECT_EQ(Describe(e), "Out of memory|<null>|0");
    }
    if (BuiltWithSanitizer())
        GTEST_SKIP() << "the sanitizers' allocators abort on impossible sizes";
    volatile size_t impossible = size_t(1) << 62;
    // Through a volatile pointer: the compiler may not drop the allocation.
    char* volatile block = nullptr;
    try {
        block = new char[impossible];
        ADD_FAILURE() << "no throw";
    } catch (TException const& e) {
        EXPECT_EQ(Describe(e), "Out of memory|<null>|0");
    }
    delete[] block;
}
