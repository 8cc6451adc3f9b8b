#include "global.h"

#include "measures.h"
#include "menu_presenter.h"
#include "message_presenter.h"
#include "paging.h"

namespace lindenreed::device {

int Global::dp(double value) const
{
    return measures::dp(value);
}

int Global::pixelsFromDesign(double value) const
{
    return measures::pixelsFromDesign(value);
}

QString Global::getNormalImage(const QString &name) const
{
    return defaultNormalImagesPrefix() + u'/' + name;
}

void Global::openContextMenuLoader(QQuickItem *loader, QAbstractItemModel *model, const QString &delegate,
                                   const QString &title, const QRectF &area) const
{
    if (loader)
        MenuPresenter::of(loader)->open(model, delegate, title, area);
}

void Global::openInfoMessageLoader(QQuickItem *loader, const QString &message, const QString &icon,
                                   int timeout) const
{
    if (!loader)
        return;
    const bool isName = !icon.isEmpty() && !icon.contains(u':');
    MessagePresenter::of(loader)->show(message, isName ? getNormalImage(icon) : icon, timeout);
}

void Global::closeInfoMessageLoader(QQuickItem *loader) const
{
    if (loader)
        MessagePresenter::of(loader)->hide();
}

void Global::scrollFlickablePageUp(QQuickItem *flickable) const
{
    if (flickable)
        scrollByPage(*flickable, false);
}

void Global::scrollFlickablePageDown(QQuickItem *flickable) const
{
    if (flickable)
        scrollByPage(*flickable, true);
}

} // namespace lindenreed::device
