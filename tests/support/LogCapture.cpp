#include "LogCapture.h"

#include <QMutex>
#include <QMutexLocker>

namespace {

QMutex g_mutex;
QStringList g_lines;

void Collect(QtMsgType, QMessageLogContext const& context, QString const& message)
{
    QMutexLocker lock(&g_mutex);
    g_lines << QString::fromUtf8(context.category ? context.category : "default") + QStringLiteral(": ") + message;
}

} // namespace

LogCapture::LogCapture()
{
    Clear();
    m_previous = qInstallMessageHandler(Collect);
}

LogCapture::~LogCapture()
{
    qInstallMessageHandler(m_previous);
}

QStringList LogCapture::Lines() const
{
    QMutexLocker lock(&g_mutex);
    return g_lines;
}

int LogCapture::Count() const
{
    return Lines().size();
}

bool LogCapture::Contains(QString const& category, QString const& message) const
{
    return CountOf(category, message) > 0;
}

int LogCapture::CountOf(QString const& category, QString const& message) const
{
    return Lines().count(category + QStringLiteral(": ") + message);
}

void LogCapture::Clear()
{
    QMutexLocker lock(&g_mutex);
    g_lines.clear();
}
