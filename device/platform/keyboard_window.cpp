#include "keyboard_window.h"

#include "keyboard_drawing.h"

#include <QMouseEvent>
#include <QPaintEvent>
#include <QPainter>
#include <QScreen>

#include <chrono>
#include <cstdlib>
#include <utility>

namespace lindenreed::device {

using namespace std::chrono_literals;

namespace {

constexpr std::chrono::milliseconds beforeRepeat = 600ms;
constexpr std::chrono::milliseconds betweenRepeats = 200ms; // slower than the panel draws a line of text

} // namespace

KeyboardWindow::KeyboardWindow(int dpi, bool touch)
    : m_dpi(dpi)
    , m_touch(touch)
{
    setFlags(Qt::Tool | Qt::FramelessWindowHint | Qt::WindowDoesNotAcceptFocus | Qt::WindowStaysOnTopHint);
    const auto follow = [this] {
        if (isVisible())
            moveToFoot();
    };
    connect(screen(), &QScreen::geometryChanged, this, follow);
    connect(screen(), &QScreen::availableGeometryChanged, this, follow);
    connect(&m_repeat, &QTimer::timeout, this, &KeyboardWindow::repeatDelete);
}

void KeyboardWindow::open(bool digitsOnly, const QString &language)
{
    m_view.page = digitsOnly ? KeyboardPage::Pad : KeyboardPage::Letters;
    m_view.letters = &letterLayout(language);
    m_view.shifted = false;
    m_pressed = -1;
    m_framed = m_touch ? -1 : 0;
    moveToFoot();
    show();
}

void KeyboardWindow::moveToFoot()
{
    const QRect available = screen()->availableGeometry();
    const int height = keyboardHeight(m_view, available.size(), m_dpi);
    m_place = QRect(available.left(), available.bottom() + 1 - height, available.width(), height);
    m_keys = placeKeys(m_view, m_place.size(), m_dpi);
    setGeometry(m_place);
    update();
    emit placed();
}

void KeyboardWindow::setView(const KeyboardView &view)
{
    const QPoint framed = m_framed >= 0 ? m_keys.at(m_framed).rectangle.center() : QPoint(-1, -1);
    m_view = view;
    m_keys = placeKeys(m_view, m_place.size(), m_dpi);
    // A finger that is down was on a key of the page before.
    m_pressed = -1;
    m_repeat.stop();
    m_framed = m_framed >= 0 ? std::max<qsizetype>(0, keyAt(m_keys, framed, m_dpi)) : -1;
    update();
}

void KeyboardWindow::press(qsizetype index)
{
    const KeyboardKey key = m_keys.at(index);
    KeyboardView next = m_view;
    switch (key.action) {
    case KeyAction::Text:
    case KeyAction::Space:
        next.shifted = false;
        if (next.shifted != m_view.shifted)
            setView(next);
        emit textTyped(key.text);
        return;
    case KeyAction::Delete:
        emit deletePressed();
        return;
    case KeyAction::Done:
        emit donePressed();
        return;
    case KeyAction::Shift:
        next.shifted = !next.shifted;
        break;
    case KeyAction::Signs:
        next.page = KeyboardPage::Signs;
        break;
    case KeyAction::Letters:
        next.page = KeyboardPage::Letters;
        next.shifted = false;
        break;
    case KeyAction::Language:
        next.plainLatin = !next.plainLatin;
        break;
    }
    setView(next);
}

bool KeyboardWindow::takeKey(Qt::Key key)
{
    switch (key) {
    case Qt::Key_Left:
    case Qt::Key_Right:
    case Qt::Key_Up:
    case Qt::Key_Down:
        mark(m_framed, neighbour(key));
        return true;
    case Qt::Key_Return:
        press(m_framed);
        return true;
    default:
        return false;
    }
}

qsizetype KeyboardWindow::neighbour(Qt::Key direction) const
{
    const QRect from = m_keys.at(m_framed).rectangle;
    const bool sideways = direction == Qt::Key_Left || direction == Qt::Key_Right;
    const bool backwards = direction == Qt::Key_Left || direction == Qt::Key_Up;
    // What lies in the direction, the nearest row or key first, and of a row the key that is nearest in it.
    qsizetype best = m_framed;
    std::pair<int, int> bestDistance;
    for (qsizetype i = 0; i < m_keys.size(); ++i) {
        const QPoint way = m_keys.at(i).rectangle.center() - from.center();
        const int along = (sideways ? way.x() : way.y()) * (backwards ? -1 : 1);
        const int across = std::abs(sideways ? way.y() : way.x());
        if (along <= 0 || (sideways && across > from.height() / 2)
            || (!sideways && along < from.height() / 2))
            continue;
        const std::pair distance(along, across);
        if (best == m_framed || distance < bestDistance) {
            best = i;
            bestDistance = distance;
        }
    }
    return best;
}

void KeyboardWindow::mark(qsizetype &which, qsizetype index)
{
    const qsizetype before = std::exchange(which, index);
    for (const qsizetype each : {before, index}) {
        if (before != index && each >= 0)
            update(m_keys.at(each).rectangle);
    }
}

bool KeyboardWindow::isSwitchedOn(const KeyboardKey &key) const
{
    return key.action == KeyAction::Shift && m_view.shifted;
}

void KeyboardWindow::paintEvent(QPaintEvent *event)
{
    QPainter painter(this);
    painter.setClipRect(event->rect());
    drawKeyboardGround(painter, m_place.size(), m_dpi);
    for (qsizetype i = 0; i < m_keys.size(); ++i) {
        const KeyboardKey &key = m_keys.at(i);
        if (!key.rectangle.intersects(event->rect()))
            continue;
        const bool inverted = (i == m_pressed) != isSwitchedOn(key);
        drawKey(painter, key, {inverted, i == m_framed}, m_dpi);
    }
}

void KeyboardWindow::hideEvent(QHideEvent *event)
{
    m_repeat.stop();
    m_pressed = -1;
    QRasterWindow::hideEvent(event);
}

void KeyboardWindow::mousePressEvent(QMouseEvent *event)
{
    mark(m_pressed, keyAt(m_keys, event->position().toPoint(), m_dpi));
    m_repeated = false;
    if (m_pressed >= 0 && m_keys.at(m_pressed).action == KeyAction::Delete)
        m_repeat.start(beforeRepeat);
}

void KeyboardWindow::mouseReleaseEvent(QMouseEvent *event)
{
    m_repeat.stop();
    const qsizetype pressed = m_pressed;
    mark(m_pressed, -1);
    // A finger that slid off its key has changed its mind.
    if (pressed >= 0 && !m_repeated && keyAt(m_keys, event->position().toPoint(), m_dpi) == pressed)
        press(pressed);
}

void KeyboardWindow::repeatDelete()
{
    m_repeated = true;
    m_repeat.setInterval(betweenRepeats);
    emit deletePressed();
}

} // namespace lindenreed::device
