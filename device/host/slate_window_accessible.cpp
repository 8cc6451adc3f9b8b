#include "slate_window_accessible.h"

#include "slate_window_view.h"

#include <QAccessible>
#include <QAccessibleObject>
#include <QGuiApplication>

#include <array>

namespace lindenreed::remote {

using namespace Qt::StringLiterals;

namespace {

struct Key
{
    QString word; ///< the protocol's
    QString name; ///< for people
};

const QList<Key> &keys()
{
    static const QList<Key> list
        = {{u"prev"_s, u"Previous"_s}, {u"menu"_s, u"Menu"_s}, {u"next"_s, u"Next"_s}};
    return list;
}

/// One key of the chin, or one button of the strip behind them.
class PartAccessible : public QAccessibleInterface, public QAccessibleActionInterface
{
public:
    PartAccessible(DeviceView *view, int index)
        : m_view(view)
        , m_index(index)
    {
    }

    bool isValid() const override { return true; }
    QObject *object() const override { return nullptr; }
    QAccessibleInterface *parent() const override { return QAccessible::queryAccessibleInterface(m_view); }
    QAccessibleInterface *child(int) const override { return nullptr; }
    QAccessibleInterface *childAt(int, int) const override { return nullptr; }
    int childCount() const override { return 0; }
    int indexOfChild(const QAccessibleInterface *) const override { return -1; }
    QAccessible::Role role() const override { return QAccessible::Button; }
    void setText(QAccessible::Text, const QString &) override { }

    QString text(QAccessible::Text which) const override
    {
        if (which == QAccessible::Name)
            return isKey() ? keys().at(m_index).name : m_view->buttons().name(button());
        if (which == QAccessible::Description && !isKey())
            return m_view->buttons().tip(button());
        return {};
    }
    QRect rect() const override
    {
        return m_view->onDesk(isKey() ? m_view->body().keyRectangle(keys().at(m_index).word)
                                      : m_view->layout().strip().buttonRectangle(button()));
    }
    QAccessible::State state() const override
    {
        QAccessible::State state;
        if (!isKey()) {
            state.disabled = !m_view->buttons().isAvailable(button());
            state.checked = m_view->buttons().isOn(button());
        }
        return state;
    }

    void *interface_cast(QAccessible::InterfaceType type) override
    {
        return type == QAccessible::ActionInterface ? static_cast<QAccessibleActionInterface *>(this)
                                                    : nullptr;
    }
    QStringList actionNames() const override { return {pressAction()}; }
    void doAction(const QString &action) override
    {
        if (action != pressAction())
            return;
        if (isKey())
            m_view->pressKey(keys().at(m_index).word);
        else
            m_view->pressButton(button());
    }
    QStringList keyBindingsForAction(const QString &) const override { return {}; }

private:
    bool isKey() const { return m_index < keys().size(); }
    DeviceButton button() const { return deviceButtons[std::size_t(m_index - keys().size())]; }

    DeviceView *m_view;
    int m_index;
};

class ViewAccessible : public QAccessibleObject
{
public:
    explicit ViewAccessible(DeviceView *view)
        : QAccessibleObject(view)
        , m_view(view)
    {
        // The registry owns them; it is told below when they go.
        for (int i = 0; i < childCount(); ++i)
            m_parts.append(QAccessible::registerAccessibleInterface(new PartAccessible(view, i)));
    }
    ~ViewAccessible() override
    {
        for (const QAccessible::Id part : std::as_const(m_parts))
            QAccessible::deleteAccessibleInterface(part);
    }
    ViewAccessible(const ViewAccessible &) = delete;
    ViewAccessible &operator=(const ViewAccessible &) = delete;

    QAccessibleInterface *parent() const override { return QAccessible::queryAccessibleInterface(qApp); }
    QAccessibleInterface *child(int index) const override
    {
        return index >= 0 && index < m_parts.size() ? QAccessible::accessibleInterface(m_parts.at(index))
                                                    : nullptr;
    }
    int childCount() const override { return int(keys().size()) + int(deviceButtons.size()); }
    int indexOfChild(const QAccessibleInterface *child) const override
    {
        return int(m_parts.indexOf(QAccessible::uniqueId(const_cast<QAccessibleInterface *>(child))));
    }
    QAccessible::Role role() const override { return QAccessible::Window; }
    QRect rect() const override { return m_view->geometry(); }
    QAccessible::State state() const override
    {
        QAccessible::State state;
        state.active = m_view->isActive();
        return state;
    }
    QString text(QAccessible::Text which) const override
    {
        if (which == QAccessible::Name)
            return m_view->title();
        if (which == QAccessible::Description)
            return m_view->lostSentence();
        return {};
    }

private:
    DeviceView *m_view;
    QList<QAccessible::Id> m_parts;
};

QAccessibleInterface *make(const QString &, QObject *object)
{
    auto *view = qobject_cast<DeviceView *>(object);
    return view ? new ViewAccessible(view) : nullptr;
}

} // namespace

void makeDeviceViewAccessible()
{
    QAccessible::installFactory(make);
}

} // namespace lindenreed::remote
