// What the device has noted of its timers.

#pragma once

#include "show_device.h"

struct RanOut
{
    qint64 number;
    QString name;
    double intervalMs;
    double armedMs; ///< on the monotonic clock, as nowMs()
    double ranMs;
    bool fired;

    double lateMs() const { return ranMs - armedMs - intervalMs; }

    static double nowMs()
    {
        return double(std::chrono::duration_cast<std::chrono::microseconds>(
                          std::chrono::steady_clock::now().time_since_epoch())
                          .count())
            / 1000;
    }

    /// The last ones, oldest first; not more than the device keeps.
    static QList<RanOut> lately(ShowDevice &device)
    {
        QList<RanOut> list;
        const QJsonArray all = device.ask(QStringLiteral("timers")).value(QLatin1String("ran_out")).toArray();
        for (const QJsonValue &value : all) {
            const QJsonObject ran = value.toObject();
            list.append({ran.value(QLatin1String("number")).toInteger(),
                         ran.value(QLatin1String("name")).toString(),
                         ran.value(QLatin1String("interval_ms")).toDouble(),
                         double(ran.value(QLatin1String("armed_us")).toInteger()) / 1000,
                         double(ran.value(QLatin1String("ran_us")).toInteger()) / 1000,
                         ran.value(QLatin1String("fired")).toBool()});
        }
        return list;
    }
};
