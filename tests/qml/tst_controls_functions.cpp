// Messages through a loader, and paging.

#include "panel_application.h"
#include "qml_scene.h"

#include <QAccessible>
#include <QElapsedTimer>
#include <QSignalSpy>

using namespace Qt::StringLiterals;

class tst_ControlsFunctions : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void firstMessageLoadsTheComponent();
    void messageIsPlainText();
    void iconNames_data();
    void iconNames();
    void closesAfterItsTime();
    void secondMessageReplacesTheFirst();
    void secondMessageHasItsWholeTime();
    void hiddenMessageLeavesNoTimer();
    void messageOfAHiddenScreenHasItsTime();
    void closing();
    void tapCloses();
    void besideTheMessageTheScreenIsInUse();
    void accessibleMessage();
    void place();
    void longMessageStaysOnThePanel();
    void nothingWithoutALoader();
    void paging_data();
    void paging();
    void pagingWhatCannotMove();

private:
    void open(const QString &message, const QString &icon, int timeout);
    QQuickItem *message() const { return m_scene->item(u"message"_s); }
    bool shown() const { return m_scene->item(u"loader"_s)->isVisible(); }

    std::unique_ptr<QmlScene> m_scene;
};

void tst_ControlsFunctions::init()
{
    m_scene = std::make_unique<QmlScene>(
        "import QtQuick\nimport com.lindenreed.controls 1.0\n"
        "Item { id: screen\n"
        "function open(message: string, icon: string, timeout: int): void {\n"
        "    Global.openInfoMessageLoader(loader, message, icon, timeout) }\n"
        "function close(): void { Global.closeInfoMessageLoader(loader) }\n"
        "function openNothing(): void { Global.openInfoMessageLoader(null, 'x', '', 10)\n"
        "    Global.closeInfoMessageLoader(null); Global.scrollFlickablePageDown(null) }\n"
        "function page(item: Item, down: bool): void {\n"
        "    if (down) Global.scrollFlickablePageDown(item); else Global.scrollFlickablePageUp(item) }\n"
        "property int taps\n"
        "MouseArea { anchors.fill: parent; onClicked: ++screen.taps }\n"
        "Component { id: inner; InfoMessage { objectName: 'message' } }\n"
        "LoaderNoSleep { id: loader; objectName: 'loader'; anchors.fill: parent; visible: false\n"
        "    onVisibleChanged: if (visible && status === Loader.Null) sourceComponent = inner }\n"
        "LoaderNoSleep { id: later; objectName: 'later'; visible: false }\n"
        "function openLater(): void { Global.openInfoMessageLoader(later, 'Later', '', 150) }\n"
        "Connections { target: loader.item; function onClose() { Global.closeInfoMessageLoader(loader) } } }",
        QSize(758, 979));
    QVERIFY2(m_scene->isShown(), qPrintable(m_scene->errors()));
}

void tst_ControlsFunctions::cleanup()
{
    const QStringList warnings = m_scene->warnings();
    m_scene.reset();
    QCOMPARE(warnings, QStringList());
}

void tst_ControlsFunctions::open(const QString &message, const QString &icon, int timeout)
{
    QVERIFY(QMetaObject::invokeMethod(m_scene->root(), "open", Q_ARG(QString, message), Q_ARG(QString, icon),
                                      Q_ARG(int, timeout)));
}

void tst_ControlsFunctions::firstMessageLoadsTheComponent()
{
    QVERIFY(!message());
    open(u"2 pictures were added"_s, u"image://resource/icon_done"_s, 4000);
    QVERIFY(shown());
    QVERIFY(message());
    QCOMPARE(message()->property("text").toString(), u"2 pictures were added"_s);
    QCOMPARE(message()->property("icon").toUrl(), QUrl(u"image://resource/icon_done"_s));
}

void tst_ControlsFunctions::messageIsPlainText()
{
    open(u"<b>Garden</b>"_s, QString(), 4000);
    const double tagged = message()->childItems().constLast()->width();
    open(u"Garden"_s, QString(), 4000);
    QVERIFY2(tagged > message()->childItems().constLast()->width() * 1.3, "the tags are letters");
}

void tst_ControlsFunctions::iconNames_data()
{
    QTest::addColumn<QString>("icon");
    QTest::addColumn<QUrl>("url");

    QTest::newRow("a URL") << u"image://resource/icon_done"_s << QUrl(u"image://resource/icon_done"_s);
    QTest::newRow("a name") << u"icon_done"_s << QUrl(u"image://resource/icon_done"_s);
    QTest::newRow("none") << QString() << QUrl();
}

void tst_ControlsFunctions::iconNames()
{
    QFETCH(QString, icon);
    QFETCH(QUrl, url);

    open(u"Saved"_s, icon, 4000);
    QCOMPARE(message()->property("icon").toUrl(), url);
}

void tst_ControlsFunctions::closesAfterItsTime()
{
    QElapsedTimer clock;
    clock.start();
    open(u"Saved"_s, QString(), 200);
    QTRY_VERIFY(!shown());
    QVERIFY(clock.elapsed() >= 190);
    QVERIFY2(message(), "the component stays for the next message");
    open(u"Again"_s, QString(), 4000);
    QVERIFY(shown());
    QCOMPARE(message()->property("text").toString(), u"Again"_s);
}

void tst_ControlsFunctions::secondMessageReplacesTheFirst()
{
    open(u"First"_s, u"icon_done"_s, 4000);
    QQuickItem *first = message();
    open(u"Second"_s, QString(), 4000);
    QCOMPARE(message(), first);
    QCOMPARE(message()->property("text").toString(), u"Second"_s);
    QCOMPARE(message()->property("icon").toUrl(), QUrl());
}

void tst_ControlsFunctions::secondMessageHasItsWholeTime()
{
    open(u"First"_s, QString(), 50);
    open(u"Second"_s, QString(), 400);
    QElapsedTimer clock;
    clock.start();
    QTRY_VERIFY(!shown());
    QVERIFY(clock.elapsed() >= 380);
}

void tst_ControlsFunctions::hiddenMessageLeavesNoTimer()
{
    open(u"First"_s, QString(), 100);
    m_scene->item(u"loader"_s)->setVisible(false); // by the screen's own hand
    open(u"Second"_s, QString(), 0); // until it is closed
    QVERIFY(QMetaObject::invokeMethod(m_scene->root(), "openLater"));
    QVERIFY(m_scene->item(u"later"_s)->isVisible());
    QTRY_VERIFY(!m_scene->item(u"later"_s)->isVisible()); // the first one's time is over as well
    QVERIFY(shown());
}

void tst_ControlsFunctions::messageOfAHiddenScreenHasItsTime()
{
    open(u"Saved"_s, QString(), 200);
    m_scene->root()->setVisible(false);
    m_scene->root()->setVisible(true);
    QVERIFY(shown());
    QTRY_VERIFY(!shown());
}

void tst_ControlsFunctions::closing()
{
    open(u"First"_s, QString(), 4000);
    QMetaObject::invokeMethod(m_scene->root(), "close");
    QVERIFY(!shown());
    QMetaObject::invokeMethod(m_scene->root(), "close");
    QVERIFY(!shown());
}

void tst_ControlsFunctions::tapCloses()
{
    open(u"Saved"_s, u"icon_done"_s, 4000);
    QSignalSpy close(message(), SIGNAL(close()));
    QTest::mouseClick(&m_scene->window(), Qt::LeftButton, {}, QPoint(379, 979 - 90 - 23 - 40));
    QCOMPARE(close.count(), 1);
    QVERIFY(!shown());
    QCOMPARE(m_scene->root()->property("taps").toInt(), 0);
}

void tst_ControlsFunctions::besideTheMessageTheScreenIsInUse()
{
    open(u"Saved"_s, u"icon_done"_s, 4000);
    QTest::mouseClick(&m_scene->window(), Qt::LeftButton, {}, QPoint(379, 300));
    QVERIFY(shown());
    QCOMPARE(m_scene->root()->property("taps").toInt(), 1);
}

void tst_ControlsFunctions::accessibleMessage()
{
    open(u"Saved"_s, u"icon_done"_s, 4000);
    QAccessibleInterface *alert = QAccessible::queryAccessibleInterface(message()->childItems().constLast());
    QVERIFY(alert);
    QCOMPARE(alert->role(), QAccessible::AlertMessage);
    QCOMPARE(alert->text(QAccessible::Name), u"Saved"_s);
    QVERIFY(alert->actionInterface());
    alert->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    QVERIFY(!shown());
}

void tst_ControlsFunctions::place()
{
    open(u"Saved"_s, u"icon_done"_s, 4000);
    const QQuickItem *box = message()->childItems().constLast();
    QCOMPARE(box->y() + box->height(), 979.0 - 90 - 23); // clear of the footer button
    QCOMPARE(box->height(), 51.0 + 2 * 23);
    QVERIFY(std::abs(box->x() + box->width() / 2 - 379) <= 1);
    const QImage picture = m_scene->window().grabWindow().convertToFormat(QImage::Format_Grayscale8);
    const int middle = int(box->y() + box->height() / 2);
    for (int x = 0; x < 3; ++x)
        QCOMPARE(picture.pixelColor(int(box->x()) + x, middle), QColor(Qt::black));
    QCOMPARE(picture.pixelColor(int(box->x()) + 3, middle), QColor(Qt::white));
}

void tst_ControlsFunctions::longMessageStaysOnThePanel()
{
    open(u"Pictures were added to "_s + u"Grandmother's album of the coast "_s.repeated(3), u"icon_done"_s,
         4000);
    const QQuickItem *box = message()->childItems().constLast();
    QVERIFY(box->x() >= 34);
    QVERIFY(box->x() + box->width() <= 758 - 34);
    QVERIFY2(box->height() > 130, "several lines");
    QCOMPARE(box->y() + box->height(), 979.0 - 90 - 23);
}

void tst_ControlsFunctions::nothingWithoutALoader()
{
    QVERIFY(QMetaObject::invokeMethod(m_scene->root(), "openNothing"));
    QVERIFY(!shown());
}

void tst_ControlsFunctions::paging_data()
{
    QTest::addColumn<QByteArray>("list");
    QTest::addColumn<double>("from");
    QTest::addColumn<bool>("down");
    QTest::addColumn<double>("to");

    const QByteArray grid
        = "GridView { width: 300; height: 500; cellWidth: 300; cellHeight: 90; model: 20; delegate: Item {}";
    const QByteArray plain = "Flickable { width: 300; height: 500; contentHeight: 1300 ";
    const QByteArray list = "ListView { width: 300; height: 500; spacing: 10; model: 20\n"
                            "delegate: Item { width: 300; height: 100 } }";
    QTest::newRow("a row of a grid that was cut comes whole")
        << QByteArray(grid + " }") << 0.0 << true << 360.0;
    QTest::newRow("and back") << QByteArray(grid + " }") << 450.0 << false << 90.0;
    QTest::newRow("of whole rows the last one stays") << QByteArray(
        "GridView { width: 300; height: 450; cellWidth: 300; cellHeight: 90; model: 20; delegate: Item {} }")
                                                      << 0.0 << true << 360.0;
    QTest::newRow("from between two rows down") << QByteArray(grid + " }") << 100.0 << true << 450.0;
    QTest::newRow("from between two rows up") << QByteArray(grid + " }") << 520.0 << false << 180.0;
    QTest::newRow("a list") << list << 0.0 << true << 330.0;
    QTest::newRow("a list, back") << list << 660.0 << false << 330.0;
    QTest::newRow("what the footer keeps clear is not seen yet")
        << QByteArray(grid + " footer: Item { height: 60 } }") << 0.0 << true << 270.0;
    QTest::newRow("at the end") << QByteArray(grid + " }") << 1200.0 << true << 1300.0;
    QTest::newRow("the end with its footer")
        << QByteArray(grid + " footer: Item { height: 60 } }") << 1200.0 << true << 1360.0;
    QTest::newRow("at the beginning") << QByteArray(grid + " }") << 100.0 << false << 0.0;
    QTest::newRow("content shorter than the view") << QByteArray(
        "GridView { width: 300; height: 500; cellWidth: 300; cellHeight: 90; model: 2; delegate: Item {} }")
                                                   << 0.0 << true << 0.0;
    QTest::newRow("rows higher than the view") << QByteArray(
        "GridView { width: 300; height: 50; cellWidth: 300; cellHeight: 90; model: 9; delegate: Item {} }")
                                               << 0.0 << true << 90.0;
    QTest::newRow("a flickable") << QByteArray(plain + "}") << 0.0 << true << 500.0;
    QTest::newRow("a flickable's end") << QByteArray(plain + "}") << 500.0 << true << 800.0;
    QTest::newRow("margins") << QByteArray(plain + "; topMargin: 10; bottomMargin: 20 }") << 700.0 << true
                             << 820.0;
    QTest::newRow("margin above") << QByteArray(plain + "; topMargin: 10 }") << 400.0 << false << -10.0;
}

void tst_ControlsFunctions::paging()
{
    QFETCH(QByteArray, list);
    QFETCH(double, from);
    QFETCH(bool, down);
    QFETCH(double, to);

    QQmlComponent component(&m_scene->engine());
    component.setData("import QtQuick\n" + list, QUrl(u"qrc:/list.qml"_s));
    const std::unique_ptr<QQuickItem> item(qobject_cast<QQuickItem *>(component.create()));
    QVERIFY2(item, qPrintable(component.errorString()));
    item->setParentItem(m_scene->root());
    item->setProperty("contentY", from);
    QMetaObject::invokeMethod(m_scene->root(), "page", Q_ARG(QQuickItem *, item.get()), Q_ARG(bool, down));
    QCOMPARE(item->property("contentY").toDouble(), to);
}

void tst_ControlsFunctions::pagingWhatCannotMove()
{
    QMetaObject::invokeMethod(m_scene->root(), "page", Q_ARG(QQuickItem *, m_scene->item(u"loader"_s)),
                              Q_ARG(bool, true));
    QVERIFY(!m_scene->item(u"loader"_s)->property("contentY").isValid());
}

PANEL_TEST_MAIN(tst_ControlsFunctions)
#include "tst_controls_functions.moc"
