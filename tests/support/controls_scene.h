// Scenes of controls, and looking at what they draw.

#pragma once

#include <facts.h>

#include "qml_scene.h"

/// `items`, with the control set imported in both versions, below an Item with the id "screen" in a window of
/// `size` pixels on a panel of `dpi`. Null, with a warning, where they cannot be shown.
inline std::unique_ptr<QmlScene> controlsScene(const QByteArray &items, QSize size = {600, 800},
                                               int dpi = 212)
{
    lindenreed::device::facts().dpi = dpi;
    auto scene = std::make_unique<QmlScene>("import QtQuick\nimport com.lindenreed.controls 1.0\n"
                                            "import com.lindenreed.controls 2.0 as LRControls2\n"
                                            "Item { id: screen\n"
                                                + items + "\n}",
                                            size);
    if (scene->isShown())
        return scene;
    qWarning("%s", qPrintable(scene->errors()));
    return nullptr;
}

/// Ends a scene, which may be null, and gives the warnings of its life; the panel is that of the device
/// again.
inline QStringList endScene(std::unique_ptr<QmlScene> &scene)
{
    const QStringList warnings = scene ? scene->warnings() : QStringList();
    scene.reset();
    lindenreed::device::facts().dpi = 212;
    return warnings;
}

/// The bounding rectangle of everything in a grey picture that is darker than `limit`.
inline QRect ink(const QImage &picture, int limit = 128)
{
    QRect found;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            if (picture.constScanLine(y)[x] < limit)
                found |= QRect(x, y, 1, 1);
        }
    }
    return found;
}

inline int grey(const QImage &picture, int x, int y)
{
    return picture.constScanLine(y)[x];
}
