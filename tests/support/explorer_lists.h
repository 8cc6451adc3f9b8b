// What grid and list of an explorer, and the overview's rows, have in common. Needs slate_core.

#pragma once

#include "explorer_fixture.h"

#include <device.h>

#include <QQuickWindow>
#include <QSignalSpy>

namespace explorer_lists {

/// The properties of grid and list, and what stands at their foot.
inline void compareProperties(const RunningExplorer &explorer)
{
    const QQuickItem *const list = explorer.list();
    QVERIFY(list->clip());
    QVERIFY(list->activeFocusOnTab());
    QVERIFY(list->property("keyNavigationEnabled").toBool());
    QCOMPARE(list->property("pressDelay").toInt(), 120);
    QCOMPARE(list->property("model").value<QObject *>(), explorer.folders());
    const auto *foot = list->property("footerItem").value<QQuickItem *>();
    QVERIFY(foot);
    QCOMPARE(foot->height(), explorer.measure(QStringLiteral("GlobalValues.scrollListButtonsHeight")));
    QCOMPARE(foot->width(), list->width());
    QCOMPARE(explorer.footer()->size(), explorer.explorer()->size());
    QCOMPARE(explorer.footer()->property("grid").value<QQuickItem *>(), list);
}

/// What is around a list gives it the focus.
inline void focusIsPassedOn(const RunningExplorer &explorer)
{
    QTRY_VERIFY(explorer.list()->hasActiveFocus());
    explorer.footer()->forceActiveFocus();
    QVERIFY(!explorer.list()->hasActiveFocus());
    explorer.explorer()->forceActiveFocus();
    QVERIFY(explorer.list()->hasActiveFocus());
}

/// Drags a list that does not fit: the rectangle of the fast mode is as high as the list and as wide as the
/// screen.
inline void dragIsFast(QQuickWindow *window, const QQuickItem *list)
{
    const QSignalSpy wanted(&lindenreed::device::Device::instance()->screen,
                            &lindenreed::device::Screen::fastModeWanted);
    const QPoint start(300, 700);
    QTest::mousePress(window, Qt::LeftButton, {}, start);
    for (int step = 1; step <= 8; ++step)
        QTest::mouseMove(window, start - QPoint(0, step * 20), 20);
    QTRY_COMPARE(wanted.count(), 1);
    QTest::mouseRelease(window, Qt::LeftButton, {}, start - QPoint(0, 160));
    const QPoint corner = list->mapToScene(QPointF()).toPoint() + QPoint(0, PanelHeight());
    QCOMPARE(wanted.first().first().toRect(),
             QRect(corner, QSize(ScreenWidth(), int(list->height())))
                 & QRect(0, 0, ScreenWidth(), ScreenHeight()));
    QTRY_VERIFY(!list->property("moving").toBool());
}

} // namespace explorer_lists
