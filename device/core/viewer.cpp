#include "viewer.h"

namespace lindenreed::device {

void Viewer::open(const QString &path)
{
    constexpr int kept = 100;
    m_opened.append(path);
    if (m_opened.size() > kept)
        m_opened.removeFirst();
    emit requested(path);
}

} // namespace lindenreed::device
