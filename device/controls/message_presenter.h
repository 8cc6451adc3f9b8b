// One message at a time through a QML loader.

#pragma once

#include <QObject>
#include <QString>
#include <QTimer>

class QQuickItem;

namespace lindenreed::device {

/// Brings a message to a loader's item, as soon as there is one, and hides the loader when its time is over.
/// Main thread; a child of its loader, one for each.
class MessagePresenter : public QObject
{
    Q_OBJECT

public:
    /// The loader's presenter, made on first use.
    static MessagePresenter *of(QQuickItem *loader);

    void show(const QString &message, const QString &icon, int timeoutMs);
    void hide();

private slots:
    void fillItem();
    void visibilityChanged();

private:
    explicit MessagePresenter(QQuickItem *loader);

    QQuickItem *m_loader;
    QString m_message;
    QString m_icon;
    QTimer m_timer;
};

} // namespace lindenreed::device
