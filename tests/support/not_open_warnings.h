// What Qt says for each statement on a database that is not open.

#pragma once

#include <QString>
#include <QtGlobal>

/// Swallows these warnings; what they stand for is in the device log.
class WithoutNotOpenWarnings
{
public:
    WithoutNotOpenWarnings() { s_usual = qInstallMessageHandler(hand); }
    ~WithoutNotOpenWarnings() { qInstallMessageHandler(s_usual); }
    WithoutNotOpenWarnings(const WithoutNotOpenWarnings &) = delete;
    WithoutNotOpenWarnings &operator=(const WithoutNotOpenWarnings &) = delete;

private:
    static void hand(QtMsgType type, const QMessageLogContext &context, const QString &message)
    {
        if (!message.endsWith(QLatin1String("database not open")))
            s_usual(type, context, message);
    }

    static inline QtMessageHandler s_usual = nullptr;
};
