// What the programs that measure in a device share.

#pragma once

#include <panel_file.h>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QJsonObject>
#include <QString>
#include <QTimer>

#include <algorithm>
#include <cstdint>
#include <ctime>
#include <map>
#include <vector>

namespace lindenreed::benchmarks {

/// The calling thread's own time in ms: what others take from the machine does not count.
inline double cpuTime()
{
    timespec time = {};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return double(time.tv_sec) * 1e3 + double(time.tv_nsec) * 1e-6;
}

class Medians
{
public:
    void add(const QString &name, double value) { m_values[name].push_back(value); }
    double of(const QString &name)
    {
        std::vector<double> &values = m_values[name];
        std::sort(values.begin(), values.end());
        return values.empty() ? 0 : values[values.size() / 2];
    }
    QJsonObject all()
    {
        QJsonObject object;
        for (const auto &[name, values] : m_values)
            object.insert(name, of(name));
        return object;
    }

private:
    std::map<QString, std::vector<double>> m_values;
};

/// The number of the panel's last complete refresh.
class Refreshes
{
public:
    Refreshes()
        : m_file(QStringLiteral("/devroot/run/panel"))
    {
        if (m_file.open(QIODevice::ReadOnly))
            m_header
                = reinterpret_cast<const remote::PanelHeader *>(m_file.map(0, sizeof(remote::PanelHeader)));
        if (!m_header)
            qFatal("There is no panel.");
    }
    quint64 last() const
    {
        const volatile std::uint64_t &number = m_header->refreshNumber; // another mapping writes it
        return number;
    }

    /// Until the panel has rested for so long: longer than what is waited for takes.
    void settle(int ms) const
    {
        QTimer waking; // to look at the panel; the loop sleeps in between
        waking.start(10);
        QElapsedTimer quiet;
        quint64 seen = 0;
        do {
            if (seen != last()) {
                seen = last();
                quiet.start();
            }
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
            // A screen that was left goes: a loop within a loop leaves it.
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        } while (quiet.elapsed() < ms);
    }

private:
    QFile m_file;
    const remote::PanelHeader *m_header = nullptr;
};

} // namespace lindenreed::benchmarks
