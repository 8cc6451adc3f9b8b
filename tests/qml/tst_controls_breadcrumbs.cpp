// The path bar: what it shows of a long way, and where its crumbs lead.

#include <facts.h>

#include "accessible_items.h"
#include "controls_scene.h"
#include "panel_application.h"

#include <QAbstractListModel>
#include <QQmlContext>
#include <QSignalSpy>

using namespace lindenreed::device;
using namespace Qt::StringLiterals;

/// Has the roles of the picker's way.
class WayModel : public QAbstractListModel
{
    Q_OBJECT

public:
    void setNames(const QStringList &names)
    {
        beginResetModel();
        m_names = names;
        endResetModel();
    }

    int rowCount(const QModelIndex &parent = {}) const override
    {
        return parent.isValid() ? 0 : int(m_names.size());
    }
    QVariant data(const QModelIndex &index, int role) const override
    {
        return role == Qt::UserRole + 1 ? QVariant(index.row()) : QVariant(m_names.value(index.row()));
    }
    QHash<int, QByteArray> roleNames() const override
    {
        return {{Qt::UserRole + 1, "index"}, {Qt::UserRole + 2, "name"}, {Qt::UserRole + 3, "display"}};
    }

private:
    QStringList m_names;
};

class tst_ControlsBreadcrumbs : public QObject
{
    Q_OBJECT

private slots:
    void cleanup();
    void topAlone();
    void wholeWay();
    void longWay_data();
    void longWay();
    void foldedCrumbLeadsToTheNearestHidden();
    void crumbIsCutToTheRoom_data();
    void crumbIsCutToTheRoom();
    void longLastNameIsElided();
    void widerAgain();
    void touchTargets();
    void pressedLook();
    void keys();
    void emptyModel();
    void listModel();
    void onlyInTheSecondVersion();

private:
    void make(const QStringList &names, int width = 1072);
    /// What stands in the bar, from left to right; "~" is the sign of the top.
    QStringList shown() const;
    QQuickItem *crumb(int at) const;

    WayModel m_model;
    std::unique_ptr<QmlScene> m_scene;
    std::unique_ptr<QSignalSpy> m_clicked;
};

namespace {

const QStringList deep = {QString(),
                          u"This device"_s,
                          u"Photo"_s,
                          u"Summer holidays"_s,
                          u"Second week at the lake"_s,
                          u"Boats and other things that float"_s};

QList<QQuickItem *> buttons(QQuickItem *item)
{
    QList<QQuickItem *> found;
    const QList<QQuickItem *> children = item->childItems();
    for (QQuickItem *child : children) {
        QAccessibleInterface *interface = child->isVisible() ? accessible(child) : nullptr;
        if (interface && interface->role() == QAccessible::Button)
            found.append(child);
        else
            found.append(buttons(child));
    }
    return found;
}

} // namespace

void tst_ControlsBreadcrumbs::make(const QStringList &names, int width)
{
    facts().dpi = 300;
    m_model.setNames(names);
    m_scene = std::make_unique<QmlScene>(
        "import QtQuick\nimport com.lindenreed.controls 2.0 as LRControls2\nimport com.lindenreed.controls "
        "1.0\n"
        "Item { property var way: null\nLRControls2.Breadcrumbs { objectName: 'bar'; width: parent.width\n"
        "height: GlobalValues.breadcrumbsHeight; model: way } }",
        QSize(width, 400));
    QVERIFY2(m_scene->isShown(), qPrintable(m_scene->errors()));
    m_scene->root()->setProperty("way", QVariant::fromValue(&m_model));
    m_clicked = std::make_unique<QSignalSpy>(m_scene->item(u"bar"_s), SIGNAL(clicked(int)));
}

QStringList tst_ControlsBreadcrumbs::shown() const
{
    QStringList texts;
    for (QQuickItem *crumb : buttons(m_scene->item(u"bar"_s))) {
        QString text = u"~"_s;
        const QList<QQuickItem *> children = crumb->childItems();
        for (const QQuickItem *child : children) {
            if (child->inherits("QQuickText") && !child->property("text").toString().isEmpty())
                text = child->property("text").toString();
        }
        texts.append(text);
    }
    return texts;
}

QQuickItem *tst_ControlsBreadcrumbs::crumb(int at) const
{
    return buttons(m_scene->item(u"bar"_s)).value(at);
}

void tst_ControlsBreadcrumbs::cleanup()
{
    const QStringList warnings = m_scene ? m_scene->warnings() : QStringList();
    m_clicked.reset();
    m_scene.reset();
    facts().dpi = 212;
    QCOMPARE(warnings, QStringList());
}

void tst_ControlsBreadcrumbs::topAlone()
{
    make({QString()});
    QTRY_COMPARE(shown(), QStringList{u"~"_s});
    QCOMPARE(m_scene->item(u"bar"_s)->height(), 112.0);
    const QImage picture = m_scene->picture(u"bar"_s);
    int left = picture.width();
    int right = 0;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            if (picture.constScanLine(y)[x] < 128) {
                left = std::min(left, x);
                right = std::max(right, x);
            }
        }
    }
    QVERIFY2(left >= 60 && left < 72 && right < 116, "a sign of 56 pixels on the content line, nothing else");
    QVERIFY(right - left > 36);
    QVERIFY(!accessibleName(crumb(0)).isEmpty()); // it has no name, but it is called something
    pressByAccessibility(crumb(0));
    QCOMPARE(m_clicked->takeFirst(), QVariantList{0});
}

void tst_ControlsBreadcrumbs::wholeWay()
{
    make({QString(), u"SD card"_s, u"Trip"_s});
    QTRY_COMPARE(shown(), (QStringList{u"~"_s, u"SD card"_s, u"Trip"_s}));
    QCOMPARE(accessibleName(crumb(1)), u"SD card"_s);
    for (int i : {2, 0, 1}) {
        QTest::mouseClick(&m_scene->window(), Qt::LeftButton, {}, sceneRectangle(crumb(i)).center());
        QCOMPARE(m_clicked->takeFirst(), QVariantList{i});
    }
    m_model.setNames({QString(), u"SD card"_s});
    QTRY_COMPARE(shown(), (QStringList{u"~"_s, u"SD card"_s}));
    m_model.setNames({QString()});
    QTRY_COMPARE(shown(), QStringList{u"~"_s});
}

void tst_ControlsBreadcrumbs::longWay_data()
{
    QTest::addColumn<int>("width");
    QTest::addColumn<QStringList>("expected");

    QTest::newRow("room for all") << 2600 << QStringList{u"~"_s,     deep.at(1), deep.at(2),
                                                         deep.at(3), deep.at(4), deep.at(5)};
    QTest::newRow("the middle folds")
        << 2060 << QStringList{u"~"_s, u"…"_s, deep.at(3), deep.at(4), deep.at(5)};
    QTest::newRow("only the ends") << 1072 << QStringList{u"~"_s, u"…"_s, deep.at(5)};
}

void tst_ControlsBreadcrumbs::longWay()
{
    QFETCH(int, width);
    QFETCH(QStringList, expected);

    make(deep, width);
    QTRY_COMPARE(shown(), expected);
    const QRect last = sceneRectangle(crumb(int(expected.size()) - 1));
    QVERIFY2(last.right() <= width, "the last crumb is in sight");
}

void tst_ControlsBreadcrumbs::foldedCrumbLeadsToTheNearestHidden()
{
    make(deep, 1072);
    QTRY_COMPARE(shown().size(), 3);
    QTest::mouseClick(&m_scene->window(), Qt::LeftButton, {}, sceneRectangle(crumb(1)).center());
    QCOMPARE(m_clicked->takeFirst(), QVariantList{4});
    QCOMPARE(accessibleName(crumb(1)), deep.at(4));
    pressByAccessibility(crumb(2));
    QCOMPARE(m_clicked->takeFirst(), QVariantList{5});
}

void tst_ControlsBreadcrumbs::crumbIsCutToTheRoom_data()
{
    QTest::addColumn<int>("width");
    QTest::addColumn<QStringList>("expected");
    QTest::addColumn<int>("cut");

    const QStringList way{u"~"_s, u"This device"_s, u"Holidays by the sea"_s, u"A summer long ago"_s,
                          u"Last"_s};
    QTest::newRow("behind the fold") << 1200
                                     << QStringList{way.at(0), u"…"_s, way.at(2), way.at(3), way.at(4)} << 2;
    QTest::newRow("more folded") << 758 << QStringList{way.at(0), u"…"_s, way.at(3), way.at(4)} << 2;
    QTest::newRow("nothing to fold") << 1510 << way << 1;
    QTest::newRow("too little left") << 580 << QStringList{way.at(0), u"…"_s, way.at(4)} << -1;
}

void tst_ControlsBreadcrumbs::crumbIsCutToTheRoom()
{
    QFETCH(int, width);
    QFETCH(QStringList, expected);
    QFETCH(int, cut);

    make({QString(), u"This device"_s, u"Holidays by the sea"_s, u"A summer long ago"_s, u"Last"_s}, width);
    QTRY_COMPARE(shown(), expected);
    for (int i = 0; i < expected.size(); ++i) {
        const QList<QQuickItem *> children = crumb(i)->childItems();
        const bool truncated = std::any_of(children.begin(), children.end(), [](const QQuickItem *child) {
            return child->property("truncated").toBool();
        });
        QCOMPARE(truncated, i == cut);
    }
    if (cut >= 0) {
        QCOMPARE(sceneRectangle(crumb(int(expected.size()) - 1)).right() + 1, width - 22); // all room is used
        // In the middle between its chevrons, which reach 14 pixels into it.
        const QRect between = sceneRectangle(crumb(cut)).adjusted(15, 0, -15, 0);
        const QRect letters
            = ink(m_scene->window().grabWindow().convertToFormat(QImage::Format_Grayscale8).copy(between));
        QVERIFY(std::abs(letters.left() - (between.width() - 1 - letters.right())) <= 4);
        pressByAccessibility(crumb(cut));
        QCOMPARE(m_clicked->takeFirst(), QVariantList{5 - int(expected.size()) + cut});
    }
}

void tst_ControlsBreadcrumbs::longLastNameIsElided()
{
    make({QString(), u"SD card"_s, u"Lakes and hills "_s.repeated(8)}, 758);
    QTRY_COMPARE(shown().size(), 3);
    const QRect last = sceneRectangle(crumb(2));
    QVERIFY(last.right() <= 758 && last.right() > 700);
    const QList<QQuickItem *> children = crumb(2)->childItems();
    QVERIFY(std::any_of(children.begin(), children.end(),
                        [](const QQuickItem *child) { return child->property("truncated").toBool(); }));

    make({QString(), u"Lakes and hills "_s.repeated(8)}, 758); // nothing is left to fold
    QTRY_COMPARE(shown().size(), 2);
    QVERIFY(sceneRectangle(crumb(1)).right() <= 758);
}

void tst_ControlsBreadcrumbs::widerAgain()
{
    make(deep, 1072);
    QTRY_COMPARE(shown().size(), 3);
    m_scene->item(u"bar"_s)->setWidth(2600); // turned round
    QTRY_COMPARE(shown().size(), 6);
    m_scene->item(u"bar"_s)->setWidth(2060);
    QTRY_COMPARE(shown().size(), 5);
}

void tst_ControlsBreadcrumbs::touchTargets()
{
    make({QString(), u"A"_s, u"B"_s, u"Trip"_s});
    QTRY_COMPARE(shown().size(), 4);
    for (int i = 0; i < 4; ++i) {
        const QRect target = sceneRectangle(crumb(i));
        QCOMPARE(target.height(), 112);
        QVERIFY(target.width() >= 106);
        if (i > 0)
            QCOMPARE(target.left(), sceneRectangle(crumb(i - 1)).right() + 1); // no gap, no overlap
    }
}

void tst_ControlsBreadcrumbs::pressedLook()
{
    make({QString(), u"SD card"_s, u"Trip"_s});
    QTRY_COMPARE(shown().size(), 3);
    const QRect target = sceneRectangle(crumb(1));
    QTest::mousePress(&m_scene->window(), Qt::LeftButton, {}, target.center());
    const QImage pressed = m_scene->window().grabWindow().convertToFormat(QImage::Format_Grayscale8);
    QTest::mouseRelease(&m_scene->window(), Qt::LeftButton, {}, QPoint(500, 300));
    QCOMPARE(pressed.pixelColor(target.center().x(), 4), QColor(Qt::black));
    QCOMPARE(pressed.pixelColor(target.left() + 2, 4), QColor(Qt::white)); // the chevron's half
    QCOMPARE(m_clicked->count(), 0);
}

void tst_ControlsBreadcrumbs::keys()
{
    make({QString(), u"SD card"_s, u"Trip"_s});
    QTRY_COMPARE(shown().size(), 3);
    crumb(2)->forceActiveFocus();
    QTest::keyClick(&m_scene->window(), Qt::Key_Right); // there is nothing further right
    QTest::keyClick(&m_scene->window(), Qt::Key_Left);
    QTest::keyClick(&m_scene->window(), Qt::Key_Return);
    QCOMPARE(m_clicked->takeFirst(), QVariantList{1});
    m_model.setNames({QString(), u"SD card"_s});
    QTRY_COMPARE(shown().size(), 2);
    QVERIFY2(crumb(1)->hasActiveFocus(), "the keys stay with the bar");
}

void tst_ControlsBreadcrumbs::emptyModel()
{
    make({});
    m_model.setNames({QString(), u"SD card"_s});
    QTRY_COMPARE(shown().size(), 2);
    m_model.setNames({});
    QTRY_COMPARE(shown(), QStringList());
}

void tst_ControlsBreadcrumbs::listModel()
{
    facts().dpi = 300;
    m_scene = std::make_unique<QmlScene>(
        "import QtQuick\nimport com.lindenreed.controls 2.0 as LRControls2\n"
        "Item { ListModel { id: way; ListElement { name: '' } ListElement { name: 'USB drive' } }\n"
        "LRControls2.Breadcrumbs { objectName: 'bar'; width: parent.width; model: way }\n"
        "function rename() { way.setProperty(1, 'name', 'Stick') } }");
    QTRY_COMPARE(shown(), (QStringList{u"~"_s, u"USB drive"_s}));
    QMetaObject::invokeMethod(m_scene->root(), "rename");
    QTRY_COMPARE(shown(), (QStringList{u"~"_s, u"Stick"_s}));
}

void tst_ControlsBreadcrumbs::onlyInTheSecondVersion()
{
    QmlScene scene("import com.lindenreed.controls 1.0\nBreadcrumbs {}");
    QVERIFY(!scene.root());
    QVERIFY2(scene.errors().contains(u"Breadcrumbs is not a type"), qPrintable(scene.errors()));
}

PANEL_TEST_MAIN(tst_ControlsBreadcrumbs)
#include "tst_controls_breadcrumbs.moc"
