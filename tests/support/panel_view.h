// Looking at the panel of the running device, as other processes do. Needs the library remote and
// Qt6::Network.

#pragma once

#include "panel_remote.h"

#include <panel_file.h>

#include <QImage>
#include <QTest>
#include <QTime>

namespace panel_view {

inline const QString panelPath = QStringLiteral("/devroot/run/panel");

/// The panel at this moment; the test program ends where there is none.
inline lindenreed::remote::PanelSnapshot snapshot()
{
    QString error;
    const auto panel = lindenreed::remote::readPanel(panelPath, &error);
    if (!panel)
        qFatal("%s", qUtf8Printable(error));
    return *panel;
}

/// As the user sees it, in screen pixels.
inline QImage upright()
{
    return snapshot().upright();
}

/// The grey, or on colour panels the qGray(), of one screen pixel.
inline int greyAt(int x, int y)
{
    return qGray(upright().pixel(x, y));
}

inline quint64 refreshNumber()
{
    return snapshot().header.refreshNumber;
}

/// Waits until the device has nothing left to do: no window has anything to draw, no refresh is to come, no
/// finger is down.
inline bool waitUntilStill()
{
    PanelRemote remote;
    return remote.ask(QStringLiteral("idle"), {{QStringLiteral("ms"), 60}}, 40'000)
        .value(QStringLiteral("ok"))
        .toBool();
}

/// refreshNumber() to count refreshes from. The clock in the status panel is one, too: it will not go on
/// within the next seconds.
inline quint64 countFrom()
{
    const auto isFarFromTheMinute = [] {
        const int inTheMinute = QTime::currentTime().msecsSinceStartOfDay() % 60'000;
        return inTheMinute > 300 && inTheMinute < 54'000;
    };
    if (!isFarFromTheMinute() && !(QTest::qWaitFor(isFarFromTheMinute, 10'000) && waitUntilStill()))
        qFatal("the device does not come to rest");
    return refreshNumber();
}

} // namespace panel_view
