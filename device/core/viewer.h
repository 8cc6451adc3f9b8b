// Pictures handed over for viewing.

#pragma once

#include <QObject>
#include <QStringList>

namespace lindenreed::device {

/// Keeps the newest 100 paths, oldest first; whoever can show them listens. Main thread.
class Viewer : public QObject
{
    Q_OBJECT

public:
    void open(const QString &path);
    const QStringList &opened() const { return m_opened; }
    void forget() { m_opened.clear(); }

signals:
    void requested(QString path);

private:
    QStringList m_opened;
};

} // namespace lindenreed::device
