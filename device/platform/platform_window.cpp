#include "platform_window.h"

#include "composition.h"
#include "platform_screen.h"

#include <QGuiApplication>
#include <QWindow>
#include <qpa/qwindowsysteminterface.h>

#include <utility>

namespace lindenreed::device {

namespace {

WId nextId()
{
    static WId last = 0;
    return ++last;
}

int inside(int wanted, int size, int from, int length)
{
    return size >= length ? from : qBound(from, wanted, from + length - size);
}

void giveFocus(QWindow *window, Qt::FocusReason reason = Qt::OtherFocusReason)
{
#if QT_VERSION >= QT_VERSION_CHECK(6, 7, 0)
    QWindowSystemInterface::handleFocusWindowChanged(window, reason);
#else
    QWindowSystemInterface::handleWindowActivated(window, reason);
#endif
}

} // namespace

PlatformWindow::PlatformWindow(QWindow *window)
    : QPlatformWindow(window)
    , m_id(nextId())
{
}

PlatformWindow::~PlatformWindow()
{
    leavePanel();
}

void PlatformWindow::initialize()
{
    m_normalGeometry = placed(window()->geometry());
    setWindowState(window()->windowStates());
}

PlatformScreen *PlatformWindow::platformScreen() const
{
    return static_cast<PlatformScreen *>(screen());
}

Composition &PlatformWindow::composition() const
{
    return platformScreen()->composition();
}

bool PlatformWindow::fillsScreen() const
{
    return !parent() && (m_states & (Qt::WindowMaximized | Qt::WindowFullScreen)) != 0;
}

bool PlatformWindow::takesFocus() const
{
    return !window()->flags().testFlag(Qt::WindowDoesNotAcceptFocus);
}

QRect PlatformWindow::placed(const QRect &wanted) const
{
    if (parent())
        return wanted;
    const QRect available = platformScreen()->availableGeometry();
    if (fillsScreen())
        return available;
    const QSize size(wanted.width() > 0 ? wanted.width() : available.width(),
                     wanted.height() > 0 ? wanted.height() : available.height());
    return QRect(QPoint(inside(wanted.x(), size.width(), available.x(), available.width()),
                        inside(wanted.y(), size.height(), available.y(), available.height())),
                 size);
}

void PlatformWindow::setGeometry(const QRect &rectangle)
{
    const QRect before = screenRectangle();
    const QRect place = placed(rectangle);
    if (!fillsScreen())
        m_normalGeometry = place;
    QPlatformWindow::setGeometry(place);
    QWindowSystemInterface::handleGeometryChange(window(), place);
    if (m_visible)
        QWindowSystemInterface::handleExposeEvent(window(), QRect(QPoint(), place.size()));
    if (m_onPanel && before != screenRectangle())
        composition().damage(QRegion(before) + screenRectangle());
}

void PlatformWindow::setVisible(bool visible)
{
    if (visible == m_visible)
        return;
    m_visible = visible;
    if (visible) {
        setGeometry(geometry()); // the screen may have turned while it was hidden
        if (takesFocus())
            requestActivateWindow();
        return;
    }

    leavePanel();
    QWindowSystemInterface::handleExposeEvent(window(), QRegion());
    if (!isActive())
        return;
    const QList<PlatformWindow *> others = platformScreen()->platformWindows();
    for (auto other = others.crbegin(); other != others.crend(); ++other) {
        if ((*other)->takesFocus()) {
            (*other)->requestActivateWindow();
            return;
        }
    }
    giveFocus(nullptr);
}

void PlatformWindow::leavePanel()
{
    // Without a screen the device has ended, and the panel is gone.
    if (std::exchange(m_onPanel, false) && screen())
        composition().remove(this);
}

void PlatformWindow::setWindowState(Qt::WindowStates states)
{
    m_states = states;
    setGeometry(fillsScreen() ? QRect() : m_normalGeometry);
}

void PlatformWindow::raise()
{
    composition().raise(this);
}

void PlatformWindow::lower()
{
    composition().lower(this);
}

bool PlatformWindow::isActive() const
{
    return QGuiApplication::focusWindow() == window();
}

void PlatformWindow::requestActivateWindow()
{
    giveFocus(window(), Qt::ActiveWindowFocusReason);
}

QRect PlatformWindow::screenRectangle() const
{
    return QRect(mapToGlobal(QPoint(0, 0)), geometry().size());
}

const QImage &PlatformWindow::picture() const
{
    static const QImage nothing;
    return m_picture ? *m_picture : nothing;
}

bool PlatformWindow::staysOnTop() const
{
    return window()->flags().testFlag(Qt::WindowStaysOnTopHint);
}

void PlatformWindow::showDrawing(const std::shared_ptr<const QImage> &picture, const QRegion &region)
{
    m_picture = picture;
    m_awaitsDrawing = false;
    if (!m_visible)
        return;
    if (!std::exchange(m_onPanel, true))
        composition().addOnTop(this);
    const QRect rectangle = screenRectangle();
    composition().damage(region.translated(rectangle.topLeft()) & rectangle);
}

void PlatformWindow::followScreen(const QPoint &before)
{
    if (parent())
        return; // moves with its parent
    m_awaitsDrawing = m_onPanel;
    const QPoint corner = platformScreen()->availableGeometry().topLeft();
    setGeometry(geometry().translated(corner - before));
}

} // namespace lindenreed::device
