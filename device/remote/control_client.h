// Asking a running device, from another process.

#pragma once

#include <QDeadlineTimer>
#include <QImage>
#include <QJsonObject>
#include <QList>
#include <QString>

#include <chrono>
#include <memory>
#include <optional>

class QLocalSocket;

namespace lindenreed::remote {

using namespace std::chrono_literals;

/// Blocking client with a time limit, for slatectl and tests. Not for a thread that also runs the device.
class ControlClient
{
public:
    /// `runFolder`: the folder with "control" and "panel". Nothing, with one sentence in `error`, where no
    /// device answers.
    static std::optional<ControlClient> connectTo(const QString &runFolder, QString *error);
    ControlClient(ControlClient &&) noexcept;
    ControlClient &operator=(ControlClient &&) noexcept;
    ~ControlClient();

    /// The answer: "ok" true with results, or false with "error" and "message". A device that is gone or does
    /// not answer in time gives the error "no-device" or "no-answer", made here.
    QJsonObject ask(const QString &command, const QJsonObject &members = {},
                    std::chrono::milliseconds limit = 40s);

    /// The next event of a connection that has asked to "follow"; empty when none came in time.
    QJsonObject nextEvent(std::chrono::milliseconds limit);

    /// Whether the device has closed the connection, as far as reading has told.
    bool isConnected() const;

    /// The panel upright, as the user sees it, so that coordinates are those of "tap"; null, with one
    /// sentence in `error`, where it cannot be read.
    QImage screenshot(QString *error = nullptr) const;

private:
    ControlClient();
    QString m_runFolder;
    std::unique_ptr<QLocalSocket> m_socket;
    std::optional<QJsonObject> readObject(const QDeadlineTimer &deadline, QString *error);
    QByteArray m_buffer;
    QList<QJsonObject> m_events; ///< came while an answer was awaited
    qint64 m_nextId = 1;
};

} // namespace lindenreed::remote
