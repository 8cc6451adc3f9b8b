// Keeping the machine awake.

#pragma once

#include <QDBusUnixFileDescriptor>
#include <QObject>
#include <QStringList>
#include <QTimer>

#include <chrono>
#include <memory>
#include <optional>

class QDBusMessage;

namespace lindenreed::device {

class MessageBus;

/// What an inhibitor is for.
struct Inhibition
{
    QString reason; ///< for people
    QString what; ///< of logind's locks
    bool vital; ///< where there is none to be had, the log says so
};

/// Holds an inhibitor of the desktop session, or else of logind, while it is wanted. Main thread.
///
/// Nothing waits: an answer that comes when the wish has changed is acted upon then. The end of this object,
/// and of the process, gives the inhibitor back. Where there is none to be had, or it was lost with its bus,
/// it is asked for again and again; one log line says so until it is had.
class Inhibitor : public QObject
{
    Q_OBJECT

public:
    /// Shorter than the shortest time after which an idle machine sleeps, long enough to cost nothing.
    static constexpr std::chrono::milliseconds usualPause{30'000};

    /// `pause`: from an attempt in vain to the next.
    explicit Inhibitor(const Inhibition &inhibition, std::chrono::milliseconds pause = usualPause);
    ~Inhibitor() override;

    void setWanted(bool wanted);
    bool isHeld() const { return m_cookie.has_value() || m_descriptor.isValid(); }
    bool isAsking() const { return m_asking; } ///< an answer is still to come

private:
    enum class Service { Desktop, Logind };

    void ask(Service service);
    void take(const QDBusMessage &reply);
    void goOn(const QString &whyNot);
    void giveBack();
    void forget();

    const Inhibition m_inhibition;
    QTimer m_pause;
    bool m_wanted = false;
    bool m_asking = false;
    Service m_service = Service::Desktop;
    QStringList m_reasons; ///< why those asked so far gave nothing
    bool m_complained = false;
    std::unique_ptr<MessageBus> m_bus;
    std::optional<uint> m_cookie; ///< of the desktop session
    QDBusUnixFileDescriptor m_descriptor; ///< of logind
};

} // namespace lindenreed::device
