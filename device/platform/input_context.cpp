#include "input_context.h"

#include "device.h"
#include "focused_field.h"
#include "keyboard_window.h"
#include "keys.h"
#include "texts.h"

#include <QGuiApplication>
#include <QLocale>
#include <QQuickItem>
#include <qpa/qplatformwindow.h>

#include <utility>

namespace lindenreed::device {

using namespace Qt::StringLiterals;

InputContext::InputContext(const Device &device)
    : m_device(device)
{
}

InputContext::~InputContext()
{
    // The application may be gone, and nobody is left to be told that the window closes.
    if (m_window)
        m_window->disconnect(this);
}

void InputContext::setFocusObject(QObject *object)
{
    Q_UNUSED(object);
    m_wanted = fieldHasFocus();
    settleSoon();
}

void InputContext::update(Qt::InputMethodQueries queries)
{
    if (queries & (Qt::ImEnabled | Qt::ImHints))
        settleSoon();
}

void InputContext::showInputPanel()
{
    // A field asks before it has the focus.
    m_wanted = true;
    settleSoon();
}

void InputContext::hideInputPanel()
{
    m_wanted = false;
    settle();
}

void InputContext::settleSoon()
{
    // The focus may pass through other items on its way from one field to the next.
    if (!std::exchange(m_settling, true))
        QMetaObject::invokeMethod(this, &InputContext::settle, Qt::QueuedConnection);
}

void InputContext::settle()
{
    m_settling = false;
    if (!m_wanted || !fieldHasFocus()) {
        if (m_window)
            m_window->hide();
        return;
    }

    if (!m_window) {
        m_window = std::make_unique<KeyboardWindow>(m_device.profile.dpi, m_device.profile.touch);
        connect(m_window.get(), &QWindow::visibleChanged, this, [this] {
            emitInputPanelVisibleChanged();
            emitKeyboardRectChanged();
        });
        connect(m_window.get(), &KeyboardWindow::placed, this, &InputContext::emitKeyboardRectChanged);
        connect(m_window.get(), &KeyboardWindow::textTyped, this, &typeIntoField);
        connect(m_window.get(), &KeyboardWindow::deletePressed, this,
                [] { keys::press(Qt::Key_Backspace, u"\b"_s); });
        connect(m_window.get(), &KeyboardWindow::donePressed, this, &InputContext::done);
    }
    const bool digitsOnly = hintsOfField().testFlag(Qt::ImhDigitsOnly);
    const bool showsPad = m_window->view().page == KeyboardPage::Pad;
    QObject *field = QGuiApplication::focusObject();
    if (m_window->isVisible() && field == m_field && digitsOnly == showsPad)
        return;
    m_field = field;
    // A field that is hidden keeps the focus.
    if (const auto *item = qobject_cast<QQuickItem *>(field))
        connect(item, &QQuickItem::visibleChanged, this, &InputContext::settleSoon, Qt::UniqueConnection);
    // The keyboard belongs to the field's window: alone it does not keep the application running. A window
    // that dies takes the focus along without a word.
    QWindow *window = QGuiApplication::focusWindow();
    m_window->setTransientParent(window);
    connect(window, &QWindow::visibleChanged, this, &InputContext::settleSoon, Qt::UniqueConnection);
    m_window->open(digitsOnly, texts::language());
}

void InputContext::done()
{
    const QPointer<QObject> field = QGuiApplication::focusObject();
    if (!hintsOfField().testFlag(Qt::ImhMultiLine))
        keys::press(Qt::Key_Return, u"\r"_s);
    // Another field that has got the focus keeps the keyboard.
    if (field == QGuiApplication::focusObject())
        hideInputPanel();
}

bool InputContext::isInputPanelVisible() const
{
    return m_window && m_window->isVisible();
}

QRectF InputContext::keyboardRect() const
{
    const QWindow *window = QGuiApplication::focusWindow();
    if (!isInputPanelVisible() || !window || !window->handle())
        return {};
    const QRect place = m_window->place();
    return QRectF(window->handle()->mapFromGlobal(place.topLeft()), place.size());
}

QLocale InputContext::locale() const
{
    return QLocale(texts::language());
}

bool InputContext::takeKey(Qt::Key key)
{
    if (m_device.profile.touch || !isInputPanelVisible())
        return false;
    if (key == Qt::Key_Back) {
        hideInputPanel();
        return true;
    }
    return m_window->takeKey(key);
}

} // namespace lindenreed::device
