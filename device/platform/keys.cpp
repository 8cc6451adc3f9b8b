#include "keys.h"

#include "focused_field.h"

#include <QGuiApplication>
#include <QPointer>
#include <QQuickItem>
#include <QTextBoundaryFinder>
#include <QWindow>
#include <qpa/qwindowsysteminterface.h>

#include <array>

namespace lindenreed::device::keys {

using namespace Qt::StringLiterals;

namespace {

struct NamedKey
{
    const char16_t *name;
    Key key;
};

// The page keys turn pages in lists as well, and the menu key opens the menu of an item.
const std::array<NamedKey, 11> table{{
    {u"menu", {23, Qt::Key_Menu}},
    {u"prev", {24, Qt::Key_PageUp}},
    {u"next", {25, Qt::Key_PageDown}},
    {u"page-up", {std::nullopt, Qt::Key_PageUp}},
    {u"page-down", {std::nullopt, Qt::Key_PageDown}},
    {u"left", {std::nullopt, Qt::Key_Left}},
    {u"right", {std::nullopt, Qt::Key_Right}},
    {u"up", {std::nullopt, Qt::Key_Up}},
    {u"down", {std::nullopt, Qt::Key_Down}},
    {u"centre", {std::nullopt, Qt::Key_Return}},
    {u"back", {std::nullopt, Qt::Key_Back}},
}};

/// The code of a key that types this character; what has none of its own goes by its text alone.
Qt::Key keyFor(const QString &character)
{
    const char32_t code = character.toUpper().toUcs4().constFirst();
    return code >= 0x20 && code <= 0xff ? Qt::Key(code) : Qt::Key_unknown;
}

} // namespace

std::optional<Key> named(const QString &name)
{
    for (const NamedKey &each : table) {
        if (name == QStringView(each.name))
            return each.key;
    }
    return std::nullopt;
}

QStringList names()
{
    QStringList names;
    for (const NamedKey &each : table)
        names.append(QStringView(each.name).toString());
    return names;
}

bool press(Qt::Key key, const QString &text)
{
    const QPointer<QWindow> window = QGuiApplication::focusWindow();
    bool taken = false;
    for (const QEvent::Type type : {QEvent::KeyPress, QEvent::KeyRelease}) {
        if (window
            && QWindowSystemInterface::handleKeyEvent<QWindowSystemInterface::SynchronousDelivery>(
                window, type, key, Qt::NoModifier, text)
            && type == QEvent::KeyPress)
            taken = true;
    }
    return taken;
}

void moveFocus(Qt::Key arrow)
{
    const bool forward = arrow == Qt::Key_Right || arrow == Qt::Key_Down;
    if (!forward && arrow != Qt::Key_Left && arrow != Qt::Key_Up)
        return;
    // From an item that it does not reach itself, as a list, Tab would begin anew at the window's first.
    auto *item = qobject_cast<QQuickItem *>(QGuiApplication::focusObject());
    QQuickItem *next = item ? item->nextItemInFocusChain(forward) : nullptr;
    if (next)
        next->forceActiveFocus(forward ? Qt::TabFocusReason : Qt::BacktabFocusReason);
    else
        press(forward ? Qt::Key_Tab : Qt::Key_Backtab);
}

bool type(const QString &text)
{
    if (!fieldHasFocus())
        return false;
    // What the user takes for one character is typed at once, whatever number of code points it has.
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text);
    qsizetype from = 0;
    for (qsizetype to = finder.toNextBoundary(); to > from; to = finder.toNextBoundary()) {
        const QString character = text.mid(from, to - from);
        from = to;
        if (character == u"\n"_s)
            press(Qt::Key_Return, u"\r"_s);
        else
            press(keyFor(character), character);
    }
    return true;
}

} // namespace lindenreed::device::keys
