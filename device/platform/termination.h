// The end of the program, in good order.

#pragma once

#include <QObject>
#include <QSocketNotifier>

#include <memory>

namespace lindenreed::device {

class Events;

/// Ends the event loop after the application was told that it goes to the background, on order and on
/// SIGTERM, SIGINT and SIGHUP. Takes these signals over while it lives; at most one of it at a time. Main
/// thread.
class Termination : public QObject
{
    Q_OBJECT

public:
    explicit Termination(Events &events);
    ~Termination() override;

    /// The application has dealt with the event when this returns; the loop ends at its next turn.
    void begin();

private:
    void takeSignals();

    Events &m_events;
    std::unique_ptr<QSocketNotifier> m_notifier;
    bool m_begun = false;
};

} // namespace lindenreed::device
