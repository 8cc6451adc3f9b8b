// A device on the desk: shows its panel and is its finger and its keys.

#pragma once

#include "slate_window_layout.h"

#include <QImage>
#include <QJsonObject>
#include <QRasterWindow>
#include <QTimer>

namespace lindenreed::remote {

/// The window. Knows the panel file; what the user does goes out by asked() or through the buttons, and the
/// owner passes it on.
class DeviceView : public QRasterWindow
{
    Q_OBJECT

public:
    /// `buttons` must outlive it.
    DeviceView(const QString &panelPath, ButtonStates *buttons);

    /// The display is the panel: nothing but its pixels, in the middle of a whole black screen, without the
    /// body and without the light, which is the display's own. Before the first reading; whoever shows the
    /// window shows it full screen.
    void showPanelAlone();

    /// Reads the panel soon; several calls are one reading.
    void readSoon();

    /// A device that has gone leaves its last picture behind, and a sentence over it.
    void setDeviceIsThere(bool isThere);

    const WindowLayout &layout() const { return m_layout; }
    const DeviceBody &body() const { return m_layout.body(); }
    const ButtonStates &buttons() const { return *m_buttons; }
    const QImage &shown() const { return m_shown; } ///< null before the first reading

    /// The sentence beside the buttons: a note, or the tip of the button under the pointer; empty: none.
    QString tip() const;
    QString lostSentence() const; ///< empty while the device is there

    /// Places the pointer of the mouse in pixels of the display, from the body's corner.
    QPoint onBody(QPointF position) const;
    /// The other way round, for a rectangle, in logical pixels of the desk.
    QRect onDesk(const QRect &rectangle) const;

    void pressButton(DeviceButton button);
    void pressKey(const QString &key); ///< "prev", "menu" or "next"

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
    void fillScreen();
    void cutOut();
    void finishGesture(QPoint end, qint64 duration);
    void controlKey(int key);
    void setSize(double divisor);
    void setHovered(std::optional<DeviceButton> button);
    void showNote(const QString &sentence);
    QPoint bodyOrigin() const;

    QString m_panelPath;
    ButtonStates *m_buttons;
    bool m_panelAlone = false;
    QTimer m_reading;
    WindowLayout m_layout;
    QSize m_panelSize; ///< as the user holds it; empty before the first reading
    QImage m_shown;
    double m_wantedDivisor = 0; ///< 0: what fits
    bool m_deviceIsThere = true;

    QString m_pressedKey; ///< the sign that the pointer is on
    QString m_armedKey; ///< the sign that it was pressed on
    std::optional<DeviceButton> m_pressedButton; ///< the same for the buttons
    std::optional<DeviceButton> m_armedButton;
    std::optional<QPoint> m_start; ///< panel pixel of a gesture under way
    bool m_moved = false;
    quint64 m_pressedAt
        = 0; ///< milliseconds, of the display's own clock: a slow turn here makes no tap a hold

    std::optional<DeviceButton> m_hovered;
    QTimer m_tipDelay; ///< the tip is there when it has run out
    bool m_tipIsShown = false;
    QString m_note;
    QTimer m_noteTime;
};

} // namespace lindenreed::remote
