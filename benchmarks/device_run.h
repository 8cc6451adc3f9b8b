// Starts a program that measures in a device of its own.

#pragma once

#include <benchmark/benchmark.h>

#include <QCoreApplication>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QString>
#include <QStringList>

namespace lindenreed::benchmarks {

/// One iteration: the program beside this one writes its "seconds" and further "stages" as JSON.
inline void runInDevice(benchmark::State &state, const QString &profile, const QString &program,
                        const QStringList &arguments)
{
    constexpr int limitMs = 900'000;
    const QString programs = QCoreApplication::applicationDirPath() + QLatin1Char('/');
    QProcess device;
    device.setProcessChannelMode(QProcess::SeparateChannels);
    device.start(programs + QStringLiteral("../../bin/slate-run"),
                 QStringList{QStringLiteral("--temporary"), QStringLiteral("--headless"),
                             QStringLiteral("--profile"), profile, QStringLiteral("--"), programs + program}
                     + arguments);
    device.waitForFinished(limitMs);
    const QJsonObject result = QJsonDocument::fromJson(device.readAllStandardOutput()).object();
    if (result.isEmpty()) {
        state.SkipWithError(device.readAllStandardError().constData());
        return;
    }
    state.SetIterationTime(result.value(QLatin1String("seconds")).toDouble());
    const QJsonObject stages = result.value(QLatin1String("stages")).toObject();
    for (auto stage = stages.begin(); stage != stages.end(); ++stage)
        state.counters[stage.key().toStdString()] = stage.value().toDouble();
}

} // namespace lindenreed::benchmarks
