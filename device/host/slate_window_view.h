// A device on the desk: shows its panel and is its finger and its keys.

#pragma once

#include "slate_window_body.h"

#include <QImage>
#include <QJsonObject>
#include <QRasterWindow>
#include <QTimer>

namespace lindenreed::remote {

/// The window. Knows the panel file; what the user does goes out by asked(), and the owner passes it on.
class DeviceView : public QRasterWindow
{
    Q_OBJECT

public:
    explicit DeviceView(const QString &panelPath);

    /// Reads the panel soon; several calls are one reading.
    void readSoon();

    const DeviceBody &body() const { return m_body; }
    const QImage &shown() const { return m_shown; } ///< null before the first reading

    /// Places the pointer of the mouse in pixels of the display, from the body's corner.
    QPoint onBody(QPointF position) const;

signals:
    void ready(); ///< the panel was read for the first time
    void asked(const QString &command, const QJsonObject &members);
    void closing(); ///< the user closes the window; it stays until the owner lets it go

protected:
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    bool event(QEvent *event) override;

private:
    void read();
    void fit(QSize panel);
    void cutOut();
    void finishGesture(QPoint end, qint64 duration);
    QPoint bodyOrigin() const;

    QString m_panelPath;
    QTimer m_reading;
    DeviceBody m_body;
    QSize m_panelSize; ///< as the user holds it; empty before the first reading
    QImage m_shown;
    int m_wantedDivisor = 0; ///< 0: the smallest that fits
    QString m_pressedKey; ///< the sign that the pointer is on
    QString m_armedKey; ///< the sign that it was pressed on
    std::optional<QPoint> m_start; ///< panel pixel of a gesture under way
    bool m_moved = false;
    quint64 m_pressedAt
        = 0; ///< milliseconds, of the display's own clock: a slow turn here makes no tap a hold
};

} // namespace lindenreed::remote
