#include "finger.h"

#include "platform_screen.h"

#include <qpa/qplatformwindow.h>
#include <qpa/qwindowsysteminterface.h>

#include <utility>

namespace lindenreed::device {

Finger::Finger(const PlatformScreen &screen)
    : m_screen(screen)
{
    m_timer.setTimerType(Qt::PreciseTimer);
    m_timer.setInterval(stepTime);
    connect(&m_timer, &QTimer::timeout, this, &Finger::tick);
}

void Finger::perform(Gesture gesture)
{
    m_gestures.push_back(std::move(gesture));
    if (!m_timer.isActive())
        m_timer.start();
}

void Finger::tick()
{
    if (m_gestures.empty()) {
        m_timer.stop();
        return;
    }
    ++m_ticks;
    const Gesture &gesture = m_gestures.front();
    const bool abandoned = gesture.abandoned && gesture.abandoned();
    if (!m_down && !abandoned) {
        press();
        return;
    }
    if (!abandoned && m_stepsDone < gesture.steps) {
        ++m_stepsDone;
        moveTo(gesture.from + (gesture.to - gesture.from) * m_stepsDone / double(gesture.steps));
        return;
    }
    if (!abandoned && gesture.steps == 0 && !hasRested(gesture.rest))
        return;

    if (m_down)
        lift();
    const std::function<void()> done = m_gestures.front().done;
    m_gestures.pop_front();
    if (done)
        done();
}

/// Where the program is held up, items begin late to wait for a long press: it has the time that they have.
/// Anything shorter ends before they have waited.
bool Finger::hasRested(std::chrono::milliseconds rest) const
{
    return rest < longPressTime ? std::chrono::milliseconds(m_sincePress.elapsed()) >= rest
                                : m_ticks * stepTime >= rest;
}

void Finger::press()
{
    m_place = m_gestures.front().from;
    m_window = m_screen.topLevelAt(m_place);
    m_stepsDone = 0;
    m_ticks = 0;
    m_sincePress.start();
    m_down = true;
    emit downChanged(true);
    if (m_window && m_window->handle() && !m_window->isActive()
        && !m_window->flags().testFlag(Qt::WindowDoesNotAcceptFocus))
        m_window->requestActivate();
    send(QEvent::MouseButtonPress, Qt::LeftButton, Qt::LeftButton);
}

void Finger::moveTo(const QPoint &place)
{
    m_place = place;
    send(QEvent::MouseMove, Qt::LeftButton, Qt::NoButton);
}

void Finger::lift()
{
    m_down = false;
    send(QEvent::MouseButtonRelease, Qt::NoButton, Qt::LeftButton);
    // A finger that is up is nowhere: nothing stays hovered.
    if (m_window)
        QWindowSystemInterface::handleLeaveEvent<QWindowSystemInterface::SynchronousDelivery>(m_window);
    m_window.clear();
    emit downChanged(false);
}

void Finger::send(QEvent::Type type, Qt::MouseButtons buttons, Qt::MouseButton button)
{
    if (!m_window || !m_window->handle())
        return;
    QWindowSystemInterface::handleMouseEvent<QWindowSystemInterface::SynchronousDelivery>(
        m_window, m_window->handle()->mapFromGlobal(m_place), m_place, buttons, button, type);
}

} // namespace lindenreed::device
