#include "paging.h"

#include <QQuickItem>
#include <QVariant>

#include <algorithm>
#include <cmath>

namespace lindenreed::device {

namespace {

double number(const QQuickItem &item, const char *name)
{
    return item.property(name).toDouble();
}

/// How much of the view is new after one page: whole rows in a grid, so that no row is ever cut twice.
double pageLength(const QQuickItem &flickable)
{
    double length = flickable.height();
    if (const auto *footer = flickable.property("footerItem").value<QQuickItem *>())
        length -= footer->height();
    const double row = number(flickable, "cellHeight");
    if (row > 0)
        return std::max(std::floor(length / row), 1.0) * row;
    return length > 0 ? length : flickable.height();
}

} // namespace

void scrollByPages(QQuickItem &flickable, int pages)
{
    if (!flickable.property("contentY").isValid())
        return;
    QMetaObject::invokeMethod(&flickable, "cancelFlick");
    const double top = number(flickable, "originY") - number(flickable, "topMargin");
    const double bottom = number(flickable, "originY") + number(flickable, "contentHeight")
        + number(flickable, "bottomMargin") - flickable.height();
    const double wanted = number(flickable, "contentY") + pages * pageLength(flickable);
    flickable.setProperty("contentY", std::round(std::max(std::min(wanted, bottom), top)));
}

} // namespace lindenreed::device
