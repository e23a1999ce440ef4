#pragma once

#include <QString>
#include <QStringList>
#include <QtGlobal>

// Collects the messages logged while it lives, with their category:
//   LogCapture log;  ...;  EXPECT_TRUE(log.Contains("Log.NoGoZone", "Compare 47"));
// Not thread-safe across captures: one capture at a time, as in a test body.
class LogCapture
{
public:
    LogCapture();
    ~LogCapture();
    LogCapture(LogCapture const&) = delete;
    LogCapture& operator=(LogCapture const&) = delete;

    // Lines of the form "<category>: <message>".
    QStringList Lines() const;
    int Count() const;
    bool Contains(QString const& category, QString const& message) const;
    int CountOf(QString const& category, QString const& message) const;
    void Clear();

private:
    QtMessageHandler m_previous;
};
