// What the device tells the application.

#pragma once

#include <device.h>

#include <QStringList>
#include <QTest>

/// Rows for the keys by their names, with the device's events and Qt's key that come of each: "events" and
/// "qtKey", which is 0 for none.
inline void addKeys(int menuKey)
{
    QTest::addColumn<QStringList>("events");
    QTest::addColumn<int>("qtKey");
    QTest::newRow("menu") << QStringList{QStringLiteral("25 23 0")} << menuKey;
    QTest::newRow("prev") << QStringList{QStringLiteral("25 24 0")} << int(Qt::Key_PageUp);
    QTest::newRow("next") << QStringList{QStringLiteral("25 25 0")} << int(Qt::Key_PageDown);
    QTest::newRow("page-up") << QStringList() << int(Qt::Key_PageUp);
    QTest::newRow("page-down") << QStringList() << int(Qt::Key_PageDown);
    QTest::newRow("left") << QStringList() << int(Qt::Key_Left);
    QTest::newRow("right") << QStringList() << int(Qt::Key_Right);
    QTest::newRow("up") << QStringList() << int(Qt::Key_Up);
    QTest::newRow("down") << QStringList() << int(Qt::Key_Down);
    QTest::newRow("centre") << QStringList() << int(Qt::Key_Return);
    QTest::newRow("back") << QStringList() << int(Qt::Key_Back);
}

/// While it lives, the running device's events come here instead of to an application. Main thread.
class RecordedEvents
{
public:
    RecordedEvents()
    {
        lindenreed::device::Device::instance()->events.setHandler([this](int type, int par1, int par2) {
            m_texts.append(QStringLiteral("%1 %2 %3").arg(type).arg(par1).arg(par2));
            return 0;
        });
    }
    ~RecordedEvents() { lindenreed::device::Device::instance()->events.setHandler({}); }
    Q_DISABLE_COPY_MOVE(RecordedEvents)

    /// Type and the two parameters of each, as "25 24 0", oldest first.
    const QStringList &texts() const { return m_texts; }

private:
    QStringList m_texts;
};
