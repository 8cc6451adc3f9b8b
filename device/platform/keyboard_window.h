// The window of the device's own keyboard.

#pragma once

#include "keyboard_page.h"

#include <QRasterWindow>
#include <QTimer>

namespace lindenreed::device {

/// Lies at the foot of the available part of the screen, above all other windows, and never takes the focus.
/// Says which key was pressed; keeps to itself which page it shows. Main thread.
class KeyboardWindow : public QRasterWindow
{
    Q_OBJECT

public:
    /// Without `touch` one key has a frame, which the arrow keys move.
    KeyboardWindow(int dpi, bool touch);

    /// Shows the letters of `language`, or the pad, in its place on the screen, with the frame at the first
    /// key. The choice of plain Latin lasts from one opening to the next.
    void open(bool digitsOnly, const QString &language);

    const QList<KeyboardKey> &keys() const { return m_keys; } ///< in reading order, as they are shown now
    const KeyboardView &view() const { return m_view; }
    QRect place() const
    {
        return m_place;
    } ///< screen pixels; ahead of geometry(), which follows in the event loop
    bool isFramed(qsizetype index) const { return index == m_framed; } ///< by the arrow keys
    void press(qsizetype index); ///< presses and releases a key of keys() by its index

    /// For a device without touch: the arrow keys move a frame over the keys and the return key presses the
    /// framed one. False: the key is none of these.
    bool takeKey(Qt::Key key);

signals:
    void textTyped(const QString &text);
    void deletePressed();
    void donePressed();
    void placed(); ///< it lies elsewhere now, or has another size

protected:
    void paintEvent(QPaintEvent *event) override;
    void hideEvent(QHideEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;

private:
    void setView(const KeyboardView &view);
    void moveToFoot();
    void repeatDelete();
    void mark(qsizetype &which, qsizetype index);
    qsizetype neighbour(Qt::Key direction) const;
    bool isSwitchedOn(const KeyboardKey &key) const;

    const int m_dpi;
    const bool m_touch;
    KeyboardView m_view;
    QRect m_place;
    QList<KeyboardKey> m_keys;
    qsizetype m_pressed = -1; ///< under the finger
    qsizetype m_framed = -1; ///< by the arrow keys; -1: none, on a device with touch
    QTimer m_repeat; ///< of a delete key that is held
    bool m_repeated = false;
};

} // namespace lindenreed::device
