// Which characters stand on which row of the keyboard.

#pragma once

#include <QString>

#include <array>

namespace lindenreed::device {

/// The letters of one language, small ones, as they stand on the keys from left to right.
struct LetterLayout
{
    QStringView language; ///< code as of the device's language; "" for plain Latin
    int columns; ///< letter keys that would fill a row
    QStringView extra; ///< a row of its own above the others; "" for none
    std::array<QStringView, 3> rows; ///< the last shares its row with shift and delete
};

/// The letters of `language` ("de", "pt_BR"), else those of the code without its country, else plain Latin.
const LetterLayout &letterLayout(const QString &language);
const LetterLayout &plainLatinLayout();

/// Digits and signs; the last row shares its row with delete.
const std::array<QStringView, 3> &signRows();
QChar commaSign(); ///< stands in the lowest row, between the letters key and the space

/// Digits of the pad; the 0 below stands between delete and done.
const std::array<QStringView, 3> &padRows();

/// The letter that shift gives.
QChar capital(QChar letter);

} // namespace lindenreed::device
