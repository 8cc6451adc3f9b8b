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

/// Distance from row to row; 0 in what has no rows.
double rowHeight(QQuickItem &flickable)
{
    const double cell = number(flickable, "cellHeight");
    if (cell > 0)
        return cell;
    // A list tells no height of its rows, but the row at its top has one.
    QQuickItem *row = nullptr;
    if (!QMetaObject::invokeMethod(&flickable, "itemAt", Q_RETURN_ARG(QQuickItem *, row),
                                   Q_ARG(double, number(flickable, "contentX") + flickable.width() / 2),
                                   Q_ARG(double, number(flickable, "contentY") + 1))
        || !row)
        return 0;
    return row->height() + number(flickable, "spacing");
}

/// What shows of the view above the footer of its list.
double visibleLength(const QQuickItem &flickable)
{
    double length = flickable.height();
    if (const auto *footer = flickable.property("footerItem").value<QQuickItem *>())
        length -= footer->height();
    return length > 0 ? length : flickable.height();
}

/// Where a page further the view's upper edge is: one row stays in sight, and the edge is that of a row.
double pageFurther(QQuickItem &flickable, bool down)
{
    const double row = rowHeight(flickable);
    const double start = number(flickable, "originY");
    const double now = number(flickable, "contentY");
    const double length = visibleLength(flickable);
    if (row <= 0)
        return now + (down ? length : -length);
    const double rows = (now - start) / row;
    const double step = std::max(length / row - 1, 1.0);
    constexpr double rounding = 1e-6;
    return start + row * (down ? std::floor(rows + step + rounding) : std::ceil(rows - step - rounding));
}

} // namespace

void scrollByPage(QQuickItem &flickable, bool down)
{
    if (!flickable.property("contentY").isValid())
        return;
    QMetaObject::invokeMethod(&flickable, "cancelFlick");
    const double top = number(flickable, "originY") - number(flickable, "topMargin");
    const double bottom = number(flickable, "originY") + number(flickable, "contentHeight")
        + number(flickable, "bottomMargin") - flickable.height();
    const double wanted = pageFurther(flickable, down);
    flickable.setProperty("contentY", std::round(std::max(std::min(wanted, bottom), top)));
}

} // namespace lindenreed::device
