#include "slate_window_view.h"

#include "panel_file.h"
#include "slate_window_sentences.h"

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
constexpr double mostDivisor = 8;
constexpr int tipDelayMs = 600;
constexpr int noteMs = 6000; ///< for a sentence of a dozen words

/// The protocol's name of a key of the keyboard; empty for the others. Where no finger turns the pages, the
/// arrows have other work.
QString keyName(int key, bool hasTouch)
{
    switch (key) {
    case Qt::Key_Left:
        return hasTouch ? u"prev"_s : u"left"_s;
    case Qt::Key_Right:
        return hasTouch ? u"next"_s : u"right"_s;
    case Qt::Key_PageUp:
        return u"prev"_s;
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

DeviceView::DeviceView(const QString &panelPath, ButtonStates *buttons)
    : m_panelPath(panelPath)
    , m_buttons(buttons)
{
    setFlags(Qt::Window | Qt::FramelessWindowHint);
    setTitle(u"Picture frame"_s);
    QSurfaceFormat surface = format();
    surface.setAlphaBufferSize(8); // the desk shows at the round corners
    setFormat(surface);
    m_reading.setSingleShot(true);
    connect(&m_reading, &QTimer::timeout, this, &DeviceView::read);

    m_tipDelay.setSingleShot(true);
    m_tipDelay.setInterval(tipDelayMs);
    connect(&m_tipDelay, &QTimer::timeout, this, [this] {
        m_tipIsShown = true;
        update();
    });
    m_noteTime.setSingleShot(true);
    m_noteTime.setInterval(noteMs);
    connect(&m_noteTime, &QTimer::timeout, this, [this] { showNote({}); });
    connect(m_buttons, &ButtonStates::changed, this, [this] { update(); });
    connect(m_buttons, &ButtonStates::note, this, &DeviceView::showNote);
}

void DeviceView::showPanelAlone()
{
    m_panelAlone = true;
}

void DeviceView::readSoon()
{
    if (!m_reading.isActive())
        m_reading.start(readDelayMs);
}

void DeviceView::setDeviceIsThere(bool isThere)
{
    m_deviceIsThere = isThere;
    if (isThere)
        readSoon();
    else
        m_reading.stop();
    update();
}

QString DeviceView::lostSentence() const
{
    return m_deviceIsThere
        ? QString()
        : u"The device has gone. This was its last picture; it appears here again when it is "
          "back."_s;
}

QString DeviceView::tip() const
{
    if (!m_note.isEmpty())
        return m_note;
    return m_hovered && m_tipIsShown ? m_buttons->tip(*m_hovered) : QString();
}

void DeviceView::showNote(const QString &sentence)
{
    m_note = sentence;
    if (sentence.isEmpty())
        m_noteTime.stop();
    else
        m_noteTime.start();
    update();
}

void DeviceView::setHovered(std::optional<DeviceButton> button)
{
    if (button == m_hovered)
        return;
    m_hovered = button;
    // From one button to the next without delay: the user is reading.
    if (!button) {
        m_tipDelay.stop();
        m_tipIsShown = false;
    } else if (!m_tipIsShown) {
        m_tipDelay.start();
    }
    update();
}

void DeviceView::pressButton(DeviceButton button)
{
    showNote({});
    m_buttons->press(button);
}

void DeviceView::pressKey(const QString &key)
{
    emit asked(u"key"_s, {{u"name"_s, key}});
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
    const bool lightOn = !m_panelAlone && (panel->header.flags & 4) != 0;
    m_shown = shownPanel(upright, body().panel().size(), lightOn, int(panel->header.brightness),
                         int(panel->header.colour));
    update();
    if (first)
        emit ready();
}

void DeviceView::fit(QSize panel)
{
    m_panelSize = panel;
    m_start.reset();
    if (m_panelAlone) {
        fillScreen();
        return;
    }
    const double ratio = devicePixelRatio();
    const QSize room = screen() ? screen()->availableGeometry().size() * ratio : panel;
    const double divisor
        = m_wantedDivisor > 0 ? m_wantedDivisor : WindowLayout::divisorFor(panel, room, ratio);
    m_layout = WindowLayout(panel, divisor, ratio);

    const QSize size(int(std::ceil(m_layout.size().width() / ratio)),
                     int(std::ceil(m_layout.size().height() / ratio)));
    setMinimumSize(size);
    setMaximumSize(size);
    resize(size);
    cutOut();
}

void DeviceView::fillScreen()
{
    const double ratio = devicePixelRatio();
    const QRect whole = screen() ? screen()->geometry() : QRect({}, m_panelSize);
    const QSizeF room = QSizeF(whole.size()) * ratio;
    const double divisor = std::max(m_panelSize.width() / room.width(), m_panelSize.height() / room.height());
    m_layout = WindowLayout(m_panelSize, divisor, ratio); // never below 1: pixels stay sharp
    setGeometry(whole); // where nobody arranges the windows, full screen alone makes none larger
}

void DeviceView::cutOut()
{
    // Where no compositor blends the corners, the shape keeps the desk free of them; only X11 knows that
    // case.
    if (QGuiApplication::platformName() == "xcb"_L1 && devicePixelRatio() == 1.0)
        setMask(m_layout.outline().translated(bodyOrigin()));
}

QPoint DeviceView::bodyOrigin() const
{
    const QSize room = size() * devicePixelRatio();
    if (m_panelAlone)
        return QRect({}, room).center() - body().panel().center();
    // Whoever arranges the windows may make ours larger than we asked.
    return {std::max(0, (room.width() - m_layout.size().width()) / 2),
            std::max(0, (room.height() - m_layout.size().height()) / 2)};
}

QPoint DeviceView::onBody(QPointF position) const
{
    const QPointF pixels = position * devicePixelRatio();
    return QPoint(int(std::floor(pixels.x())), int(std::floor(pixels.y()))) - bodyOrigin();
}

QRect DeviceView::onDesk(const QRect &rectangle) const
{
    const double ratio = devicePixelRatio();
    const QRect inWindow = rectangle.translated(bodyOrigin());
    const QPoint corner(int(inWindow.x() / ratio), int(inWindow.y() / ratio));
    return {mapToGlobal(corner), inWindow.size() / ratio};
}

void DeviceView::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setCompositionMode(QPainter::CompositionMode_Source);
    painter.fillRect(QRect(QPoint(0, 0), size()), m_panelAlone ? Qt::black : Qt::transparent);
    painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
    if (m_shown.isNull())
        return;
    painter.scale(1 / devicePixelRatio(),
                  1 / devicePixelRatio()); // one panel pixel is one pixel of the display
    painter.translate(bodyOrigin());
    if (!m_panelAlone)
        body().paint(&painter, m_pressedKey);
    painter.drawImage(body().panel().topLeft(), m_shown);
    if (const QString lost = lostSentence(); !lost.isEmpty())
        paintLost(&painter, body().panel(), lost, devicePixelRatio());
    if (m_panelAlone)
        return;
    m_layout.strip().paint(&painter, *m_buttons, m_pressedButton);
    if (const QString sentence = tip(); !sentence.isEmpty())
        paintTip(&painter, m_layout, sentence, m_note.isEmpty() ? m_hovered : std::nullopt,
                 devicePixelRatio());
}

void DeviceView::resizeEvent(QResizeEvent *event)
{
    QRasterWindow::resizeEvent(event);
    if (!m_shown.isNull() && !m_panelAlone)
        cutOut();
}

void DeviceView::mousePressEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton || m_shown.isNull())
        return;
    const QPoint point = onBody(event->position());
    if (body().panel().contains(point)) {
        m_start = body().panelPixel(point);
        m_moved = false;
        m_pressedAt = event->timestamp();
    } else if (m_panelAlone) {
        return;
    } else if (const std::optional<QString> key = body().keyAt(point)) {
        m_armedKey = *key;
        m_pressedKey = *key;
        update();
    } else if (const std::optional<DeviceButton> button = m_layout.strip().buttonAt(point)) {
        m_armedButton = button;
        m_pressedButton = button;
        update();
    } else {
        startSystemMove(); // the body is what one takes hold of
    }
}

void DeviceView::mouseMoveEvent(QMouseEvent *event)
{
    const QPoint point = onBody(event->position());
    if (m_start && (body().panelPixel(point) - *m_start).manhattanLength() > wobble)
        m_moved = true;
    if (!m_armedKey.isEmpty()) {
        const QString pressed = body().keyAt(point) == m_armedKey ? m_armedKey : QString();
        if (pressed != m_pressedKey) {
            m_pressedKey = pressed;
            update();
        }
    }
    if (m_panelAlone)
        return;
    const std::optional<DeviceButton> button = m_layout.strip().buttonAt(point);
    if (m_armedButton) {
        const auto pressed = button == m_armedButton ? m_armedButton : std::nullopt;
        if (pressed != m_pressedButton) {
            m_pressedButton = pressed;
            update();
        }
    }
    setHovered(m_start ? std::nullopt : button);
}

void DeviceView::mouseReleaseEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton)
        return;
    mouseMoveEvent(event);
    if (m_start)
        finishGesture(body().panelPixel(onBody(event->position())), qint64(event->timestamp() - m_pressedAt));
    if (!m_pressedKey.isEmpty())
        pressKey(m_pressedKey);
    if (m_pressedButton)
        pressButton(*m_pressedButton);
    m_armedKey.clear();
    m_pressedKey.clear();
    m_armedButton.reset();
    m_pressedButton.reset();
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

void DeviceView::setSize(double divisor)
{
    if (m_panelAlone)
        return;
    m_wantedDivisor = divisor;
    fit(m_panelSize);
    readSoon();
}

void DeviceView::controlKey(int key)
{
    const double divisor = body().divisor();
    switch (key) {
    case Qt::Key_Q:
    case Qt::Key_W:
        close();
        break;
    case Qt::Key_Plus:
    case Qt::Key_Equal:
        setSize(std::max(1.0, std::ceil(divisor) - 1));
        break;
    case Qt::Key_Minus:
        setSize(std::min(mostDivisor, std::floor(divisor) + 1));
        break;
    case Qt::Key_0:
        setSize(0);
        break;
    default:
        if (const std::optional<DeviceButton> button = ButtonStates::withKey(key))
            pressButton(*button);
        break;
    }
}

void DeviceView::keyPressEvent(QKeyEvent *event)
{
    if (event->modifiers() & Qt::ControlModifier)
        controlKey(event->key());
    else if (const QString name = keyName(event->key(), m_buttons->hasTouch()); !name.isEmpty())
        pressKey(name);
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
    if (event->type() == QEvent::Leave)
        setHovered(std::nullopt);
    return QRasterWindow::event(event);
}

} // namespace lindenreed::remote
