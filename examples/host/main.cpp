// The demo host: loads the library the way an application module does and
// shows what it gives, one section per subsystem.

#include "Demos.h"

#include <Common>

#include <QCoreApplication>
#include <QDir>
#include <QString>

#include <cstdio>
#include <thread>

namespace {

void Section(char const* title)
{
    std::printf("\n== %s ==\n", title);
}

void Line(QString const& text)
{
    std::printf("  %s\n", text.toUtf8().constData());
}

// A take of a recording: the kind of object a host keeps in the library's
// containers and clones for its undo history.
class TTake : public TObject
{
public:
    TTake(TString<char16_t> const& name, double seconds) : m_name(name), m_seconds(seconds) {}
    TObject* CreateClone(void*) const override { return new TTake(*this); }
    int Compare(TObject const& other, long long) const override
    {
        double const delta = m_seconds - static_cast<TTake const&>(other).m_seconds;
        return delta < 0 ? -1 : delta > 0 ? 1 : 0;
    }
    QString Describe() const { return QStringLiteral("%1 (%2 s)").arg(m_name.qString()).arg(m_seconds); }

private:
    TString<char16_t> m_name;
    double m_seconds;
};

void ShowFrame()
{
    Section("Library frame");
    Line(QStringLiteral("main thread here: %1").arg(IsMainThread() ? "yes" : "no"));
    bool workerIsMain = true;
    bool workerRecordIsMain = true;
    std::thread([&] {
        workerIsMain = IsMainThread();
        workerRecordIsMain = ThisThread::CommonData().isMainThread;
    }).join();
    Line(QStringLiteral("main thread on a worker: %1 (its own record: %2)")
             .arg(workerIsMain ? "yes" : "no")
             .arg(workerRecordIsMain ? "main" : "worker"));
    Line(QStringLiteral("library guards alive: %1").arg(TLibraryGuard::LiveCount()));
    Line(QStringLiteral("flag \"ShowTimings\" in tconfig.txt: %1").arg(IsFlagSet("ShowTimings") ? "set" : "not set"));
    Line(QStringLiteral("settings may be written: %1").arg(CanWriteSettings() ? "yes" : "no"));
    g_oneShot = true;
    Line(QStringLiteral("... as a one-shot job: %1").arg(CanWriteSettings() ? "yes" : "no"));
    g_oneShot = false;
}

void ShowStrings()
{
    Section("Strings");
    TString<char> narrow("Caf\xC3\xA9 Session");
    TString<char16_t> wide(narrow.c_str());
    TString<char16_t> shared = wide;
    Line(QStringLiteral("narrow \"%1\": %2 bytes; wide: %3 UTF-16 units")
             .arg(narrow.qString())
             .arg(narrow.GetLength())
             .arg(wide.GetLength()));
    shared.Append(u" 2");
    Line(QStringLiteral("a copy changed on its own: \"%1\" / \"%2\"").arg(wide.qString(), shared.qString()));
    TString<char> latin("\xE9t\xE9");
    Line(QStringLiteral("invalid UTF-8 read as Latin-1: \"%1\"").arg(TString<char16_t>(latin.c_str()).qString()));
}

void ShowObjects()
{
    Section("Objects");
    TTake take(u"Vocals take 3", 12.5);
    TObject* clone = take.CreateClone(nullptr);
    Line(QStringLiteral("cloned %1; equal to the original: %2")
             .arg(static_cast<TTake*>(clone)->Describe())
             .arg(clone->IsEqual(take, 0) ? "yes" : "no"));
    clone->DeleteSelf();
}

void ShowFailures()
{
    Section("Failures and checksums");
    try {
        TExceptionThrower(false).SetAndThrow(QStringLiteral("The file \"%1\" cannot be opened.").arg("take3.wav"), 2u);
    } catch (TException const& failure) {
        Line(QStringLiteral("caught: %1 (code %2)").arg(failure.Message()->qString()).arg(failure.Code()));
    }
    Line(QStringLiteral("CRC-32 of \"123456789\": %1").arg(ComputeCrc32("123456789", 9), 8, 16, QLatin1Char('0')));
}

} // namespace

int main(int argc, char** argv)
{
    std::printf("common demo host\n");
    // What a host does at start: the flags first, then the application
    // object, then the global objects, which end before the application.
    QCoreApplication application(argc, argv);
    TAutoGlobalObjects globals(WString(QDir::tempPath()), WString(u"DemoHost.settings"));
    ShowFrame();
    Line(QStringLiteral("global objects: \"%1\" in %2").arg(globals.Title().qString(), globals.Folder().qString()));
    ShowStrings();
    ShowObjects();
    Section("Containers");
    ShowContainers();
    ShowFailures();
    Section("Time positions and audio values");
    ShowTimeAndAudioValues();
    return 0;
}
