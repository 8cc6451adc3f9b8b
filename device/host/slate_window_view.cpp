#include "slate_window_view.h"

#include "panel_file.h"

#include <QGuiApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QScreen>

#include <algorithm>
#include <cmath>

namespace lindenreed::remote {

using namespace Qt::StringLiterals;

namespace {

constexpr int readDelayMs = 10; ///< several refreshes of one moment are one reading
constexpr int busyDelayMs = 50;
constexpr int tapLimitMs = 500;
constexpr int wobble = 12; ///< panel pixels that a resting finger may move
constexpr int stepMs = 16; ///< a drag goes on at the speed of the mouse
constexpr int mostDivisor = 8;

/// The protocol's name of a key of the keyboard; empty for the others.
QString keyName(int key)
{
    switch (key) {
    case Qt::Key_Left:
    case Qt::Key_PageUp:
        return u"prev"_s;
    case Qt::Key_Right:
    case Qt::Key_PageDown:
        return u"next"_s;
    case Qt::Key_M:
    case Qt::Key_Menu:
        return u"menu"_s;
    case Qt::Key_Up:
        return u"up"_s;
    case Qt::Key_Down:
        return u"down"_s;
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Select:
        return u"centre"_s;
    case Qt::Key_Escape:
    case Qt::Key_Back:
        return u"back"_s;
    default:
        return {};
    }
}

} // namespace

DeviceView::DeviceView(const QString &panelPath)
    : m_panelPath(panelPath)
{
    setFlags(Qt::Window | Qt::FramelessWindowHint);
    setTitle(u"Picture frame"_s);
    QSurfaceFormat surface = format();
    surface.setAlphaBufferSize(8); // the desk shows at the round corners
    setFormat(surface);
    m_reading.setSingleShot(true);
    connect(&m_reading, &QTimer::timeout, this, &DeviceView::read);
}

void DeviceView::readSoon()
{
    if (!m_reading.isActive())
        m_reading.start(readDelayMs);
}

void DeviceView::read()
{
    const std::optional<PanelSnapshot> panel = readPanel(m_panelPath, nullptr);
    if (!panel) {
        m_reading.start(
            busyDelayMs); // in the middle of a long write; the end of the device is told elsewhere
        return;
    }
    const bool first = m_shown.isNull();
    const QImage upright = panel->upright();
    if (upright.size() != m_panelSize)
        fit(upright.size());
    m_shown = shownPanel(upright, m_body.divisor(), (panel->header.flags & 4) != 0,
                         int(panel->header.brightness), int(panel->header.colour));
    update();
    if (first)
        emit ready();
}

void DeviceView::fit(QSize panel)
{
    m_panelSize = panel;
    const double ratio = devicePixelRatio();
    const QSize room = screen() ? screen()->availableGeometry().size() * ratio : panel;
    const int divisor = m_wantedDivisor > 0 ? m_wantedDivisor : DeviceBody::divisorFor(panel, room);
    m_body = DeviceBody(panel, divisor);
    m_start.reset();

    const QSize size(int(std::ceil(m_body.size().width() / ratio)),
                     int(std::ceil(m_body.size().height() / ratio)));
    setMinimumSize(size);
    setMaximumSize(size);
    resize(size);
    cutOut();
}

void DeviceView::cutOut()
{
    // Where no compositor blends the corners, the shape keeps the desk free of them; only X11 knows that
    // case.
    if (QGuiApplication::platformName() == "xcb"_L1 && devicePixelRatio() == 1.0)
        setMask(m_body.outline().translated(bodyOrigin()));
}

QPoint DeviceView::bodyOrigin() const
{
    // Whoever arranges the windows may make ours larger than we asked.
    const QSize room = size() * devicePixelRatio();
    return {std::max(0, (room.width() - m_body.size().width()) / 2),
            std::max(0, (room.height() - m_body.size().height()) / 2)};
}

QPoint DeviceView::onBody(QPointF position) const
{
    const QPointF pixels = position * devicePixelRatio();
    return QPoint(int(std::floor(pixels.x())), int(std::floor(pixels.y()))) - bodyOrigin();
}

void DeviceView::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setCompositionMode(QPainter::CompositionMode_Source);
    painter.fillRect(QRect(QPoint(0, 0), size()), Qt::transparent);
    painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
    if (m_shown.isNull())
        return;
    painter.scale(1 / devicePixelRatio(),
                  1 / devicePixelRatio()); // one panel pixel is one pixel of the display
    painter.translate(bodyOrigin());
    m_body.paint(&painter, m_pressedKey);
    painter.drawImage(m_body.panel().topLeft(), m_shown);
}

void DeviceView::resizeEvent(QResizeEvent *event)
{
    QRasterWindow::resizeEvent(event);
    if (!m_shown.isNull())
        cutOut();
}

void DeviceView::mousePressEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton || m_shown.isNull())
        return;
    const QPoint point = onBody(event->position());
    if (m_body.panel().contains(point)) {
        m_start = m_body.panelPixel(point);
        m_moved = false;
        m_pressedAt = event->timestamp();
    } else if (const std::optional<QString> key = m_body.keyAt(point)) {
        m_armedKey = *key;
        m_pressedKey = *key;
        update();
    } else {
        startSystemMove(); // the body is what one takes hold of
    }
}

void DeviceView::mouseMoveEvent(QMouseEvent *event)
{
    const QPoint point = onBody(event->position());
    if (m_start && (m_body.panelPixel(point) - *m_start).manhattanLength() > wobble)
        m_moved = true;
    if (!m_armedKey.isEmpty()) {
        const QString pressed = m_body.keyAt(point) == m_armedKey ? m_armedKey : QString();
        if (pressed != m_pressedKey) {
            m_pressedKey = pressed;
            update();
        }
    }
}

void DeviceView::mouseReleaseEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton)
        return;
    mouseMoveEvent(event);
    if (m_start)
        finishGesture(m_body.panelPixel(onBody(event->position())), qint64(event->timestamp() - m_pressedAt));
    if (!m_pressedKey.isEmpty())
        emit asked(u"key"_s, {{u"name"_s, m_pressedKey}});
    m_armedKey.clear();
    m_pressedKey.clear();
    update();
}

void DeviceView::finishGesture(QPoint end, qint64 duration)
{
    const QPoint start = *m_start;
    m_start.reset();
    if (m_moved) {
        emit asked(u"drag"_s,
                   {{u"x1"_s, start.x()},
                    {u"y1"_s, start.y()},
                    {u"x2"_s, end.x()},
                    {u"y2"_s, end.y()},
                    {u"steps"_s, std::clamp<qint64>(duration / stepMs, 2, 120)}});
    } else if (duration < tapLimitMs) {
        emit asked(u"tap"_s, {{u"x"_s, start.x()}, {u"y"_s, start.y()}});
    } else {
        emit asked(u"hold"_s, {{u"x"_s, start.x()}, {u"y"_s, start.y()}, {u"ms"_s, duration}});
    }
}

void DeviceView::keyPressEvent(QKeyEvent *event)
{
    if (event->modifiers() & Qt::ControlModifier) {
        switch (event->key()) {
        case Qt::Key_Q:
        case Qt::Key_W:
            close();
            return;
        case Qt::Key_Plus:
        case Qt::Key_Equal:
            m_wantedDivisor = std::max(1, m_body.divisor() - 1);
            break;
        case Qt::Key_Minus:
            m_wantedDivisor = std::min(mostDivisor, m_body.divisor() + 1);
            break;
        case Qt::Key_0:
            m_wantedDivisor = 0;
            break;
        default:
            return;
        }
        fit(m_panelSize);
        readSoon();
        return;
    }
    if (const QString name = keyName(event->key()); !name.isEmpty())
        emit asked(u"key"_s, {{u"name"_s, name}});
}

bool DeviceView::event(QEvent *event)
{
    if (event->type() == QEvent::Close) {
        // The application gives the light back and ends its show first; then the device goes, and the window
        // with it.
        event->ignore();
        emit closing();
        return true;
    }
    return QRasterWindow::event(event);
}

} // namespace lindenreed::remote
