#include "core/LibraryFlags.h"
#include "core/StringConstants.h"
#include "core/TAutoGlobalObjects.h"
#include "core/TCommonExternData.h"
#include "core/TLibraryGuard.h"
#include "core/TStaticInit.h"
#include "core/ThisThread.h"

#include <QCoreApplication>
#include <QDir>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <thread>

TEST(LibraryFrame, LoadingThreadIsTheMainThread)
{
    EXPECT_TRUE(IsMainThread());
    EXPECT_TRUE(ThisThread::CommonData().isMainThread);
    bool otherIsMain = true;
    std::thread([&] { otherIsMain = IsMainThread(); }).join();
    EXPECT_FALSE(otherIsMain);
}

TEST(LibraryFrame, MainThreadStaysMainWhenTheApplicationIsMadeElsewhere)
{
    bool mainInsideOther = true;
    std::thread([&] {
        int argc = 1;
        char name[] = "frame-test";
        char* argv[] = {name, nullptr};
        QCoreApplication application(argc, argv);
        mainInsideOther = IsMainThread();
    }).join();
    EXPECT_FALSE(mainInsideOther);
    EXPECT_TRUE(IsMainThread());
}

TEST(LibraryFrame, OneRecordPerThread)
{
    ThisThread::TCommonData* mine = &ThisThread::CommonData();
    EXPECT_EQ(&ThisThread::CommonData(), mine);
    ThisThread::TCommonData* first = nullptr;
    ThisThread::TCommonData* again = nullptr;
    bool firstIsMain = true;
    std::thread([&] {
        first = &ThisThread::CommonData();
        again = &ThisThread::CommonData();
        firstIsMain = first->isMainThread;
    }).join();
    EXPECT_EQ(first, again);
    EXPECT_NE(first, mine);
    EXPECT_FALSE(firstIsMain);
}

TEST(LibraryFrame, SkipFileHookNests)
{
    int& count = ThisThread::CommonData().skipFileHook;
    int const before = count;
    SkipThreadFileHook(true);
    SkipThreadFileHook(true);
    SkipThreadFileHook(false);
    EXPECT_NE(count, before);
    SkipThreadFileHook(false);
    EXPECT_EQ(count, before);
    std::thread([] { SkipThreadFileHook(true); }).join();
    EXPECT_EQ(count, before);
}

TEST(LibraryFrame, FlagsStartAtTheirDefinedValues)
{
    EXPECT_TRUE(g_logToFile);
    EXPECT_FALSE(g_crashReport);
    EXPECT_FALSE(g_logEvents);
    EXPECT_FALSE(g_diagUserLoggingEnabled);
    EXPECT_FALSE(g_diagExtreme);
    EXPECT_TRUE(g_diagLoggingRules.isEmpty());
    EXPECT_FALSE(g_oneShot);
    EXPECT_FALSE(g_isService);
    EXPECT_EQ(g_testMode, eTestModeNone);
    EXPECT_TRUE(g_windowsFileCharCompatiblity);
}

TEST(LibraryFrame, BackgroundProcessesDoNotWriteSettings)
{
    for (int oneShot = 0; oneShot < 2; ++oneShot) {
        for (int service = 0; service < 2; ++service) {
            g_oneShot = oneShot;
            g_isService = service;
            EXPECT_EQ(CanWriteSettings(), !oneShot && !service);
            EXPECT_EQ(IsBackgroundProcess(), oneShot || service);
        }
    }
    g_oneShot = g_isService = false;
}

TEST(LibraryFrame, ExternDataIsTheFramesUntilReplaced)
{
    TCommonExternData* framed = CommonExternalData();
    ASSERT_NE(framed, nullptr);
    TCommonExternData hosts;
    SetCommonExternalData(&hosts);
    EXPECT_EQ(CommonExternalData(), &hosts);
    SetCommonExternalData(framed);
}

TEST(LibraryFrame, GuardsKeepTheLibraryAlive)
{
    int const loaded = TLibraryGuard::LiveCount();
    EXPECT_EQ(loaded, 10);
    {
        TLibraryGuard hostGuard;
        EXPECT_EQ(TLibraryGuard::LiveCount(), loaded + 1);
    }
    EXPECT_EQ(TLibraryGuard::LiveCount(), loaded);
    EXPECT_TRUE(IsMainThread()); // the block survived the host's guard
}

TEST(StaticInit, RunsInitNowAndExitAtTheEnd)
{
    std::string trace;
    {
        TStaticInit init([&] { trace += "init "; }, [&] { trace += "exit "; });
        EXPECT_EQ(trace, "init ");
        TStaticInit copy(init);
    }
    // The copy carries the exit action too.
    EXPECT_EQ(trace, "init exit exit ");
}

TEST(StaticInit, EmptyActionsDoNothing)
{
    EXPECT_NO_THROW({ TStaticInit init(nullptr, nullptr); });
    std::string trace;
    {
        TExitCleanup cleanup([&] { trace += "exit"; });
    }
    EXPECT_EQ(trace, "exit");
}

TEST(StringConstants, ExFormsAddABlankToTheirSign)
{
    EXPECT_TRUE(ks_null.isEmpty());
    EXPECT_EQ(ks_dosNewLine, ks_cr + ks_newLine);
    EXPECT_EQ(ks_colonEx.trimmed(), ks_colon);
    EXPECT_EQ(ks_commaEx.trimmed(), ks_comma);
    EXPECT_EQ(ks_semicolonEx.trimmed(), ks_semicolon);
    EXPECT_EQ(ks_dashEx.trimmed(), ks_dash);
    EXPECT_EQ(ks_asteriskEx.trimmed(), ks_asterisk);
    EXPECT_EQ(ks_openParenthesisEx.trimmed(), ks_openParenthesis);
}

// With no auto setting registered, the global objects read and write nothing:
// no settings file appears in their folder.
TEST(AutoGlobalObjects, KeepFolderAndTitleAndTouchNoFileWithoutSettings)
{
    QTemporaryDir folder;
    ASSERT_TRUE(folder.isValid());
    WString const path(folder.path());
    {
        TAutoGlobalObjects globals(path, WString(u"GlobalObjects.dat"));
        TAutoGlobalObjects copy(globals);
        TAutoGlobalObjects assigned;
        EXPECT_TRUE(assigned.Folder().IsEmpty() && assigned.Title().IsEmpty());
        assigned = copy;
        EXPECT_EQ(assigned.Folder(), path);
        EXPECT_EQ(assigned.Title(), WString(u"GlobalObjects.dat"));
    }
    EXPECT_TRUE(QDir(folder.path()).entryList(QDir::NoDotAndDotDot | QDir::AllEntries).isEmpty());
}
