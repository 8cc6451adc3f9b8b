// A context menu through a QML loader.

#pragma once

#include <QAbstractItemModel>
#include <QObject>
#include <QPointer>
#include <QRectF>
#include <QString>

class QQuickItem;

namespace lindenreed::device {

/// Brings a menu's rows and place to a loader's item, as soon as there is one. Main thread; a child of its
/// loader, one for each.
class MenuPresenter : public QObject
{
    Q_OBJECT

public:
    /// The loader's presenter, made on first use.
    static MenuPresenter *of(QQuickItem *loader);

    void open(QAbstractItemModel *model, const QString &delegate, const QString &title, const QRectF &area);

private slots:
    void fillItem();

private:
    explicit MenuPresenter(QQuickItem *loader);

    QQuickItem *m_loader;
    QPointer<QAbstractItemModel> m_model;
    QString m_delegate;
    QString m_title;
    QRectF m_area;
};

} // namespace lindenreed::device
