#include "menu_presenter.h"

#include <QQuickItem>

namespace lindenreed::device {

MenuPresenter *MenuPresenter::of(QQuickItem *loader)
{
    if (auto *presenter = loader->findChild<MenuPresenter *>(QString(), Qt::FindDirectChildrenOnly))
        return presenter;
    return new MenuPresenter(loader);
}

MenuPresenter::MenuPresenter(QQuickItem *loader)
    : QObject(loader)
    , m_loader(loader)
{
    // The class of QML's loader is not public; an item that is none simply has no such signal.
    if (loader->metaObject()->indexOfSignal("loaded()") >= 0)
        connect(loader, SIGNAL(loaded()), this, SLOT(fillItem()));
}

void MenuPresenter::open(QAbstractItemModel *model, const QString &delegate, const QString &title,
                         const QRectF &area)
{
    m_model = model;
    m_delegate = delegate;
    m_title = title;
    m_area = area;
    fillItem(); // before it shows, so that it is drawn once
    m_loader->setVisible(true);
}

void MenuPresenter::fillItem()
{
    if (auto *menu = m_loader->property("item").value<QObject *>()) {
        QMetaObject::invokeMethod(menu, "present", Q_ARG(QVariant, QVariant::fromValue(m_model.data())),
                                  Q_ARG(QVariant, m_delegate), Q_ARG(QVariant, m_title),
                                  Q_ARG(QVariant, m_area));
    }
}

} // namespace lindenreed::device
