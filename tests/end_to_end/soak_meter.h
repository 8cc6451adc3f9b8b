// What a process takes while it goes on: resident memory, handles and threads.

#pragma once

#include <QDir>
#include <QFile>
#include <QString>

#include <algorithm>
#include <numeric>
#include <vector>

#include <unistd.h>

class SoakMeter
{
public:
    struct Sample
    {
        double residentKb;
        int handles;
        int threads;
    };

    explicit SoakMeter(qint64 process)
        : m_folder(QStringLiteral("/proc/%1/").arg(process))
    {
    }

    /// Once for each change.
    void measure()
    {
        QFile file(m_folder + QStringLiteral("statm"));
        const QByteArray pages
            = file.open(QIODevice::ReadOnly) ? file.readAll().split(' ').value(1) : QByteArray();
        m_samples.push_back(
            {pages.toDouble() * double(sysconf(_SC_PAGESIZE)) / 1024, entries("fd"), entries("task")});
    }

    /// Of the straight line through the smoothed memory, the medians of hundreds of changes, from `first` on:
    /// KiB for each 100 changes.
    double growth(std::size_t first) const
    {
        std::vector<double> smooth;
        for (std::size_t end = first + 100; end <= m_samples.size(); end += 100)
            smooth.push_back(median(end - 100, end).residentKb);
        const double meanX = (double(smooth.size()) - 1) / 2;
        const double meanY = std::accumulate(smooth.cbegin(), smooth.cend(), 0.0) / double(smooth.size());
        double above = 0;
        double below = 0;
        for (std::size_t i = 0; i < smooth.size(); ++i) {
            above += (double(i) - meanX) * (smooth[i] - meanY);
            below += (double(i) - meanX) * (double(i) - meanX);
        }
        return below > 0 ? above / below : 0;
    }

    /// Of a stretch of the samples.
    Sample median(std::size_t first, std::size_t end) const
    {
        const auto of = [&](auto member) {
            std::vector<double> values;
            for (std::size_t i = first; i < end; ++i)
                values.push_back(double(m_samples[i].*member));
            std::ranges::sort(values);
            return values.empty() ? 0 : values[values.size() / 2];
        };
        return {of(&Sample::residentKb), int(of(&Sample::handles)), int(of(&Sample::threads))};
    }

private:
    int entries(const char *folder) const
    {
        return int(QDir(m_folder + QLatin1String(folder))
                       .entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot, QDir::Unsorted)
                       .size());
    }

    QString m_folder;
    std::vector<Sample> m_samples;
};
