// The settings screens in the running application, over a store with the rows of a new one. Needs the
// application's screens and slate_core.

#pragma once

#include "accessible_items.h"
#include "device_text.h"
#include "running_app.h"
#include "settings_fixture.h"

#include <device.h>
#include <slateview.h>

#include <QQmlContext>
#include <QQmlEngine>
#include <QQmlExpression>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QThreadPool>

#include <algorithm>

/// Warnings but those that are announced by QTest::ignoreMessage() fail the test.
class SettingsScreens
{
public:
    explicit SettingsScreens(const QString &profile = QStringLiteral("grey-6"))
        : device(profile)
    {
        QTest::failOnWarning(QRegularExpression(QStringLiteral(".?")));
        DataStorage::instance();
        stored_database::hurry();
        static const QStringList first = globalRows();
        [] {
            QCOMPARE(first.size(), 20);
            QVERIFY(stored_database::execute({QStringLiteral("DELETE FROM settings WHERE playlist <> -1")}));
            for (const QString &row : first)
                DataStorage::instance().setSetting(row.section(u'|', 0, 0), row.section(u'|', 1), -1);
            QCOMPARE(globalRows(), first);
        }();
    }
    ~SettingsScreens() { QThreadPool::globalInstance()->waitForDone(); }

    /// Calls `body` when the view is complete; the way back leads to the overview.
    void run(const QString &view, const std::function<void(RunningApp &)> &body)
    {
        lindenreed::picture_stand::App app;
        QCOMPARE(runApp(app,
                        [&](RunningApp &running) {
                            app.setBackView(QStringLiteral("playlists"));
                            app.changeView(view);
                            const int panel = view.contains(QStringLiteral("customize")) ? 0 : PanelHeight();
                            QTRY_COMPARE(running.screen()->size().toSize(),
                                         QSize(ScreenWidth(), ScreenHeight() - panel));
                            device.forgetCalls();
                            body(running);
                        }),
                 0);
    }

    /// What a file of the interface calls so, on the screen or over it; null where nothing has the name.
    static QObject *named(const RunningApp &running, const char *id)
    {
        QQmlContext *const context = contextOf(running.window->contentItem(), QString::fromLatin1(id));
        return context ? context->objectForName(QString::fromLatin1(id)) : nullptr;
    }
    static QQuickItem *item(const RunningApp &running, const char *id)
    {
        return qobject_cast<QQuickItem *>(named(running, id));
    }
    /// An expression as the file would write it that calls something `id`; invalid where it fails.
    static QVariant value(const RunningApp &running, const char *id, const QString &expression)
    {
        QQmlContext *const context = contextOf(running.window->contentItem(), QString::fromLatin1(id));
        if (!context)
            return {};
        QQmlExpression question(context, context->objectForName(QString::fromLatin1(id)), expression);
        const QVariant answer = question.evaluate();
        return question.hasError() ? QVariant() : answer;
    }
    /// The line that closes a row; null where it has none.
    static QQuickItem *separatorOf(const QQuickItem *row)
    {
        const QList<QQuickItem *> children = row->childItems();
        const auto found = std::ranges::find_if(children, [](const QQuickItem *child) {
            return child->metaObject()->indexOfProperty("sideMargin") >= 0;
        });
        return found != children.cend() ? *found : nullptr;
    }
    static int number(const RunningApp &running, const char *id, const QString &expression)
    {
        return value(running, id, expression).toInt();
    }

    /// The accessible press action of what has this role and name.
    static bool press(const RunningApp &running, QAccessible::Role role, const QString &name)
    {
        QQuickItem *const found = findAccessible(running.window->contentItem(), role, name);
        return found && pressByAccessibility(found);
    }
    /// As soon as it is there.
    static bool pressSoon(const RunningApp &running, const QString &button)
    {
        return QTest::qWaitFor([&] { return shows(running, QAccessible::Button, button); })
            && press(running, QAccessible::Button, button);
    }
    static bool pressButton(const RunningApp &running, const char *key)
    {
        return press(running, QAccessible::Button, textOf(key));
    }
    /// As soon as the menu has such a row.
    static bool choose(const RunningApp &running, const QString &row)
    {
        return QTest::qWaitFor([&] { return shows(running, QAccessible::RadioButton, row); })
            && press(running, QAccessible::RadioButton, row);
    }
    static bool shows(const RunningApp &running, QAccessible::Role role, const QString &name = {})
    {
        return findAccessible(running.window->contentItem(), role, name) != nullptr;
    }
    static void tap(const RunningApp &running, const QQuickItem *item)
    {
        QTest::mouseClick(running.window, Qt::LeftButton, {}, sceneRectangle(item).center());
    }
    static void key(const RunningApp &running, Qt::Key key) { QTest::keyClick(running.window, key); }

    lindenreed::device::DeviceForTest device;

private:
    static QQmlContext *contextOf(QQuickItem *item, const QString &id)
    {
        QQmlContext *const context = qmlContext(item);
        if (context && context->objectForName(id))
            return context;
        for (QQuickItem *child : item->childItems()) {
            if (QQmlContext *found = contextOf(child, id))
                return found;
        }
        return nullptr;
    }
};

/// Notes the settings' changes, "NAME VALUE" each, in their order.
class SettingsChanges : public QObject
{
    Q_OBJECT

public:
    explicit SettingsChanges(lindenreed::picture_stand::SettingsModel *model)
        : m_model(model)
    {
        const QMetaObject &meta = *model->metaObject();
        for (int i = meta.propertyOffset(); i < meta.propertyCount(); ++i) {
            const QMetaMethod note = metaObject()->method(metaObject()->indexOfSlot("note()"));
            connect(model, meta.property(i).notifySignal(), this, note);
        }
    }
    QStringList taken() { return std::exchange(m_lines, {}); }

private slots:
    void note()
    {
        const QMetaObject &meta = *m_model->metaObject();
        for (int i = meta.propertyOffset(); i < meta.propertyCount(); ++i) {
            if (meta.property(i).notifySignalIndex() == senderSignalIndex())
                m_lines.append(QString::fromLatin1(meta.property(i).name()) + u' '
                               + meta.property(i).read(m_model).toString());
        }
    }

private:
    lindenreed::picture_stand::SettingsModel *m_model;
    QStringList m_lines;
};

/// Notes signals of several objects, in the order in which they come.
class Steps : public QObject
{
    Q_OBJECT

public:
    /// Adds `step` whenever `object` emits `signal`, a signature without names.
    void note(QObject *object, const char *signal, const QString &step)
    {
        m_steps.insert({object, object->metaObject()->indexOfSignal(signal)}, step);
        QVERIFY2(object->metaObject()->indexOfSignal(signal) >= 0, signal);
        const QMetaMethod slot = metaObject()->method(metaObject()->indexOfSlot("add()"));
        connect(object, object->metaObject()->method(object->metaObject()->indexOfSignal(signal)), this,
                slot);
    }
    void add(const QString &step) { m_taken.append(step); }
    QStringList taken() { return std::exchange(m_taken, {}); }

private slots:
    void add() { add(m_steps.value({sender(), senderSignalIndex()})); }

private:
    QHash<std::pair<QObject *, int>, QString> m_steps;
    QStringList m_taken;
};
