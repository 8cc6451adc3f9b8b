// The keys of the keyboard and where they lie.

#pragma once

#include "keyboard_layouts.h"

#include <QList>
#include <QRect>
#include <QSize>
#include <QString>

namespace lindenreed::device {

enum class KeyAction { Text, Space, Shift, Delete, Signs, Letters, Language, Done };

/// One key in its place.
struct KeyboardKey
{
    KeyAction action = KeyAction::Text;
    QString text; ///< what it types; for the keys that change the page what stands on them
    QRect rectangle; ///< of the keyboard's window

    QString name() const; ///< as it is called: what it types, else what it does
    QString id() const; ///< of a key that types no character: "key_shift", "key_delete", ...; else empty
};

enum class KeyboardPage { Letters, Signs, Pad };

/// What is to be seen of the keyboard.
struct KeyboardView
{
    KeyboardPage page = KeyboardPage::Letters;
    const LetterLayout *letters = &plainLatinLayout(); ///< of the device's language
    bool plainLatin = false; ///< in place of the letters of the device's language
    bool shifted = false;
};

/// Height of the keyboard in the `available` part of the screen: half of it at most, as long as no row is
/// lower than a fingertip. The same on the pages of letters and signs, so that nothing moves between them.
int keyboardHeight(const KeyboardView &view, const QSize &available, int dpi);

/// The keys in reading order.
QList<KeyboardKey> placeKeys(const KeyboardView &view, const QSize &keyboard, int dpi);

/// Index of the key for a finger at `place`, -1 between keys that stand apart. Keys that stand side by side
/// leave no gap.
qsizetype keyAt(const QList<KeyboardKey> &keys, const QPoint &place, int dpi);

/// Pixels for a length on a 300 dpi panel.
int fromDesign(int length, int dpi);

} // namespace lindenreed::device
