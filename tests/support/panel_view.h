// Looking at the panel of the running device, as other processes do. Needs the library remote.

#pragma once

#include <panel_file.h>

#include <QImage>
#include <QTest>

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

/// Waits until nothing is refreshed for 150 ms, which is longer than a window needs to draw what it has to
/// draw.
inline bool waitUntilStill()
{
    for (int tries = 0; tries < 100; ++tries) {
        const quint64 before = refreshNumber();
        QTest::qWait(150);
        if (refreshNumber() == before)
            return true;
    }
    return false;
}

} // namespace panel_view
