// The text field that has the focus.

#pragma once

#include <QString>

namespace lindenreed::device {

/// Whether what has the focus can be seen and takes text.
bool fieldHasFocus();

/// Its hints for the keyboard; none where no field has the focus.
Qt::InputMethodHints hintsOfField();

/// Puts text at the field's cursor. The field itself keeps to its length and its validator.
void typeIntoField(const QString &text);

} // namespace lindenreed::device
