// TERM, INT and HUP as events of the main loop.

#pragma once

#include <QObject>

class QSocketNotifier;

namespace lindenreed::host {

/// One per process, main thread. Signals that come before the loop runs are kept until it does. A HUP that is
/// ignored when the launcher starts stays ignored, here and in the program.
class StopSignals : public QObject
{
    Q_OBJECT

public:
    explicit StopSignals(QObject *parent = nullptr);
    ~StopSignals() override;

    /// Tells of those that have come by now, which the loop may not have got to.
    void read();

signals:
    void received(int signal);

private:
    QSocketNotifier *m_notifier = nullptr;
};

} // namespace lindenreed::host
