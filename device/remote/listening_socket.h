// The socket at which clients of the device knock.

#pragma once

#include <QSocketNotifier>
#include <QString>
#include <QTimer>

#include <functional>
#include <memory>

namespace lindenreed::remote {

/// Lets one client in a turn of the event loop. Where there is no handle for one, it waits for some, and so
/// do those who knock. The name goes with the object.
class ListeningSocket
{
public:
    /// Gets a connected socket that does not block, and owns it.
    using Accepted = std::function<void(int descriptor)>;

    explicit ListeningSocket(Accepted accepted);
    ~ListeningSocket();
    ListeningSocket(const ListeningSocket &) = delete;
    ListeningSocket &operator=(const ListeningSocket &) = delete;

    /// For this user alone. Takes the place of a socket that no process listens on. To be called once; false
    /// with one sentence in `error`.
    bool listen(const QString &path, QString *error);

private:
    void accept();

    Accepted m_accepted;
    int m_socket = -1;
    QByteArray m_name; ///< empty before there is one
    std::unique_ptr<QSocketNotifier> m_knock;
    QTimer m_pause; ///< while there are no handles
};

} // namespace lindenreed::remote
