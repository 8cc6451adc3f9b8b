// What the launcher tells the user.

#pragma once

#include <QString>

namespace lindenreed::host {

/// One line on standard error, whatever is in the sentence.
void say(const QString &sentence);

} // namespace lindenreed::host
