// A QML scene in a window of its own, for tests that look and touch.

#pragma once

#include <QImage>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <QTest>

#include <memory>

/// An engine and one window with items from a piece of QML. Main thread.
class QmlScene
{
public:
    /// `source` is one item with its imports; it is put into a window of `size` pixels that is shown. root()
    /// is null, and errors() says why, where it does not compile.
    explicit QmlScene(const QByteArray &source, QSize size = {600, 800})
    {
        QObject::connect(&m_engine, &QQmlEngine::warnings, &m_window,
                         [this](const QList<QQmlError> &warnings) {
                             for (const QQmlError &warning : warnings)
                                 m_warnings.append(warning.toString());
                         });
        QQmlComponent component(&m_engine);
        component.setData(source, QUrl(QStringLiteral("qrc:/scene.qml")));
        m_root.reset(qobject_cast<QQuickItem *>(component.create()));
        m_errors = component.errorString();
        m_window.resize(size);
        m_window.setColor(Qt::white);
        if (m_root) {
            m_root->setParentItem(m_window.contentItem());
            m_root->setSize(size);
            m_window.show();
            m_window.requestActivate();
            m_shown = QTest::qWaitForWindowExposed(&m_window) && QTest::qWaitForWindowActive(&m_window);
        }
    }

    bool isShown() const { return m_shown; }
    QString errors() const { return m_errors; }
    QStringList warnings() const { return m_warnings; } ///< of the engine, while the scene lives
    QQmlEngine &engine() { return m_engine; }
    QQuickWindow &window() { return m_window; }
    QQuickItem *root() const { return m_root.get(); }

    /// The item with this objectName; the root may be it. Null where there is none.
    QQuickItem *item(const QString &name) const
    {
        return m_root->objectName() == name ? m_root.get() : m_root->findChild<QQuickItem *>(name);
    }

    QPoint middle(const QString &name) const
    {
        const QQuickItem *found = item(name);
        return found->mapToScene(QPointF(found->width() / 2, found->height() / 2)).toPoint();
    }

    void tap(const QPoint &point) { QTest::mouseClick(&m_window, Qt::LeftButton, {}, point); }
    void key(Qt::Key key) { QTest::keyClick(&m_window, key); }

    /// The item that has the keys' attention; null where there is none.
    QQuickItem *focused() const { return m_window.activeFocusItem(); }

    /// What `name` shows, as it is in the window now.
    QImage picture(const QString &name)
    {
        const QQuickItem *found = item(name);
        const QRectF area(found->mapToScene(QPointF()), found->size());
        return m_window.grabWindow().copy(area.toRect()).convertToFormat(QImage::Format_Grayscale8);
    }

private:
    QStringList m_warnings;
    QString m_errors;
    bool m_shown = false;
    QQmlEngine m_engine;
    QQuickWindow m_window;
    std::unique_ptr<QQuickItem> m_root;
};
