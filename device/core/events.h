// The application's handler for the device's integer events.

#pragma once

#include <QObject>

#include <functional>
#include <memory>

namespace lindenreed::device {

namespace event {
inline constexpr int key = 25; ///< par1: 23 menu, 24 previous, 25 next
inline constexpr int orientation = 32; ///< par1: the new orientation
inline constexpr int configurableKey = 40; ///< par1: scan code
inline constexpr int foreground = 151;
inline constexpr int background = 152;
inline constexpr int cardIn = 161;
inline constexpr int cardOut = 162;
inline constexpr int usbIn = 163;
inline constexpr int usbOut = 164;
} // namespace event

/// Main thread.
class Events : public QObject
{
    Q_OBJECT

public:
    using Handler = std::function<int(int type, int par1, int par2)>;

    /// Replaces the handler, also from inside a call of it. An empty one removes it.
    void setHandler(Handler handler);
    bool hasHandler() const { return m_handler != nullptr; }

    /// Calls the handler before it returns; 0 where there is none.
    int send(int type, int par1, int par2);
    /// Calls the handler at the next turn of the event loop; dropped where there is none then.
    void post(int type, int par1, int par2);

    /// What the last of the events 151 and 152 said; true before the first.
    bool inForeground() const { return m_inForeground; }

    void reset(); ///< as after the start

signals:
    void inForegroundChanged();

private:
    void setInForeground(bool inForeground);

    std::shared_ptr<const Handler> m_handler;
    bool m_inForeground = true;
};

} // namespace lindenreed::device
