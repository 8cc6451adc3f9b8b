#include "message.h"

#include <cstdio>

namespace lindenreed::host {

void say(const QString &sentence)
{
    std::fprintf(stderr, "slate-run: %s\n", qUtf8Printable(sentence.simplified()));
}

} // namespace lindenreed::host
