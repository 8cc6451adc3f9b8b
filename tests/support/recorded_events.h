// What the device tells the application.

#pragma once

#include <device.h>

#include <QStringList>

/// While it lives, the running device's events come here instead of to an application. Main thread.
class RecordedEvents
{
public:
    RecordedEvents()
    {
        lindenreed::device::Device::instance()->events.setHandler([this](int type, int par1, int par2) {
            m_texts.append(QStringLiteral("%1 %2 %3").arg(type).arg(par1).arg(par2));
            return 0;
        });
    }
    ~RecordedEvents() { lindenreed::device::Device::instance()->events.setHandler({}); }
    Q_DISABLE_COPY_MOVE(RecordedEvents)

    /// Type and the two parameters of each, as "25 24 0", oldest first.
    const QStringList &texts() const { return m_texts; }

private:
    QStringList m_texts;
};
