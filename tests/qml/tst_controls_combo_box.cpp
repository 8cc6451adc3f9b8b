// The combo box: what it shows while it is closed, and the row numbers it speaks of.

#include "combo_box_test.h"
#include "panel_application.h"

#include <QQmlExpression>

using namespace Qt::StringLiterals;

class tst_ControlsComboBox : public ComboBoxTest
{
    Q_OBJECT

private slots:
    void cleanup() { QCOMPARE(endScene(m_scene), QStringList()); }

    void showsTheSelectedRow_data();
    void showsTheSelectedRow();
    void followsItsModel();
    void followsItsBindingAfterAChoice();
    void prefixIsAboveTheValue();
    void maximumWidth();
    void fixedWidth();
    void border();
    void disabled();
    void accessibility();
};

void tst_ControlsComboBox::showsTheSelectedRow_data()
{
    QTest::addColumn<QByteArray>("rows");
    QTest::addColumn<QByteArray>("selected");
    QTest::addColumn<QString>("shown");

    const QByteArray gaps = "append({uid_: 4, text_: 'Four'}); append({uid_: 9, text_: 'Nine'})";
    QTest::newRow("none at first") << QByteArray() << QByteArray() << QString();
    QTest::newRow("-1 is none") << QByteArray() << QByteArray("selectedUid: -1") << QString();
    QTest::newRow("a row") << QByteArray() << QByteArray("selectedUid: 1") << u"Minutes"_s;
    QTest::newRow("by uid, not by place") << gaps << QByteArray("selectedUid: 9") << u"Nine"_s;
    QTest::newRow("a uid in a gap") << gaps << QByteArray("selectedUid: 1") << QString();
    QTest::newRow("-1 is none even where a row has it")
        << QByteArray("append({uid_: -1, text_: 'Minus'})") << QByteArray("selectedUid: -1") << QString();
}

void tst_ControlsComboBox::showsTheSelectedRow()
{
    QFETCH(QByteArray, rows);
    QFETCH(QByteArray, selected);
    QFETCH(QString, shown);

    make(selected, rows);
    QCOMPARE(name(), shown);
}

void tst_ControlsComboBox::followsItsModel()
{
    // As a screen refills it: nothing selected, no rows, other rows, a selection.
    make("selectedUid: 1");
    auto *rows = m_scene->root()->property("rows").value<QObject *>();
    box()->setProperty("selectedUid", -1);
    QVERIFY(QMetaObject::invokeMethod(rows, "clear"));
    QCOMPARE(name(), QString());
    box()->setProperty("selectedUid", 2);
    QCOMPARE(name(), QString());
    const auto append = [this](const QByteArray &row) {
        QQmlExpression(qmlContext(m_scene->root()), m_scene->root(),
                       QString::fromUtf8("rows.append(" + row + ")"))
            .evaluate();
    };
    append("{uid_: 0, text_: 'Regular'}");
    QCOMPARE(name(), QString());
    append("{uid_: 2, text_: 'Italic'}");
    QCOMPARE(name(), u"Italic"_s);
    QVERIFY(QMetaObject::invokeMethod(rows, "setProperty", Q_ARG(int, 1), Q_ARG(QString, u"text_"_s),
                                      Q_ARG(QVariant, u"Slanted"_s)));
    QCOMPARE(name(), u"Slanted"_s);
}

void tst_ControlsComboBox::followsItsBindingAfterAChoice()
{
    make("selectedUid: screen.unit");
    open();
    click(row(u"Hours"_s));
    QCOMPARE(name(), u"Hours"_s);
    QCOMPARE(box()->property("selectedUid").toInt(), 2);
    m_scene->root()->setProperty("unit", 1);
    QCOMPARE(name(), u"Minutes"_s);
}

void tst_ControlsComboBox::prefixIsAboveTheValue()
{
    make("selectedUid: 1; preffix_text: 'Style: '");
    QCOMPARE(name(), u"Style: Minutes"_s);
    QRectF prefix;
    QRectF value;
    for (QQuickItem *item : box()->childItems()) {
        const QRectF place(item->position(), item->size());
        if (item->property("text").toString() == u"Style: ")
            prefix = place;
        if (item->property("text").toString() == u"Minutes")
            value = place;
    }
    QVERIFY(prefix.top() >= 0 && prefix.height() > 0);
    QVERIFY(value.top() > prefix.center().y());
    QVERIFY(value.bottom() <= box()->height());
    QCOMPARE(prefix.left(), 0.0); // without a border the text begins at the edge
    QCOMPARE(value.left(), 0.0);
}

void tst_ControlsComboBox::maximumWidth()
{
    make("selectedUid: 0");
    const qreal natural = box()->width();
    QCOMPARE(box()->height(), 79.0); // 112 of the design
    m_scene.reset();
    make("selectedUid: 0; max_width: 1000");
    QCOMPARE(box()->width(), natural);
    m_scene.reset();
    make("selectedUid: 0; max_width: 90");
    QCOMPARE(box()->width(), 90.0);
    bool truncated = false;
    for (QQuickItem *item : box()->childItems()) {
        QVERIFY2(item->x() + item->width() <= 90 + 6, "nothing stands out but the ground of what is pressed");
        truncated = truncated || item->property("truncated").toBool();
    }
    QVERIFY(truncated);
    QCOMPARE(name(), u"Seconds"_s);
    m_scene.reset();
    make("selectedUid: 0; max_width: -20"); // a screen that is being laid out
    QCOMPARE(box()->width(), 0.0);
}

void tst_ControlsComboBox::fixedWidth()
{
    make("selectedUid: 0; width: 221; show_border: true");
    const qreal arrow = 221 - 10 - 23; // padding 14 and arrow 32 of the design
    bool found = false;
    for (QQuickItem *item : box()->childItems())
        found = found || (item->inherits("QQuickImage") && item->x() == arrow);
    QVERIFY2(found, "the arrow stands at the right");
}

void tst_ControlsComboBox::border()
{
    make("selectedUid: 0; width: 221; show_border: true");
    QCOMPARE(m_scene->picture(u"box"_s).pixelColor(0, 40), QColor(Qt::black));
    m_scene.reset();
    make("selectedUid: 0; width: 221");
    QCOMPARE(m_scene->picture(u"box"_s).pixelColor(0, 20), QColor(Qt::white));
}

void tst_ControlsComboBox::disabled()
{
    make("selectedUid: 1; enabled: false");
    click(box());
    pressByAccessibility(box());
    QVERIFY(!isOpened());
}

void tst_ControlsComboBox::accessibility()
{
    make("selectedUid: 0; preffix_text: 'Font: '");
    QCOMPARE(accessible(box())->role(), QAccessible::ComboBox);
    QCOMPARE(name(), u"Font: Seconds"_s);
    QVERIFY(pressByAccessibility(box()));
    QVERIFY(isOpened());
    m_scene->window().grabWindow();
    QVERIFY(pressByAccessibility(row(u"Hours"_s)));
    QCOMPARE(name(), u"Font: Hours"_s);
    QVERIFY(!isOpened());
}

PANEL_TEST_MAIN(tst_ControlsComboBox)
#include "tst_controls_combo_box.moc"
