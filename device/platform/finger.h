// The one finger on the panel.

#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QPoint>
#include <QPointer>
#include <QTimer>
#include <QWindow>

#include <chrono>
#include <deque>
#include <functional>

namespace lindenreed::device {

class PlatformScreen;

/// One stroke: down, along a line, up.
struct Gesture
{
    QPoint from; ///< screen pixels
    QPoint to;
    int steps = 0; ///< moves between down and up, one every Finger::stepTime
    std::chrono::milliseconds rest{0}; ///< without steps: how long the finger stays down
    std::function<bool()> abandoned; ///< nobody wants it any more: the finger is lifted where it is
    std::function<void()> done; ///< the finger is up, and the window has dealt with that
};

/// Carries out gestures one after the other, as events of a mouse. The window under the finger at the press
/// gets the whole gesture. Main thread.
class Finger : public QObject
{
    Q_OBJECT

public:
    static constexpr std::chrono::milliseconds stepTime{16};
    static constexpr std::chrono::milliseconds tapTime{60};
    /// Of an item; 600 in a list, which keeps a press to itself for 120.
    static constexpr std::chrono::milliseconds longPressTime{480};

    explicit Finger(const PlatformScreen &screen);

    void perform(Gesture gesture); ///< when those before it are done
    bool isBusy() const { return !m_gestures.empty(); } ///< a gesture is under way or waits

signals:
    void downChanged(bool down);

private:
    void tick();
    bool hasRested(std::chrono::milliseconds rest) const;
    void press();
    void moveTo(const QPoint &place);
    void lift();
    void send(QEvent::Type type, Qt::MouseButtons buttons, Qt::MouseButton button);

    const PlatformScreen &m_screen;
    std::deque<Gesture> m_gestures; ///< the first is under way
    QTimer m_timer;
    QElapsedTimer m_sincePress;
    QPointer<QWindow> m_window; ///< that got the press
    QPoint m_place;
    int m_stepsDone = 0;
    int m_ticks = 0; ///< since the press
    bool m_down = false;
};

} // namespace lindenreed::device
