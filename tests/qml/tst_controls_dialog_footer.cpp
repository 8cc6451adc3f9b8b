// The two buttons at a dialog's foot.

#include "dialog_test.h"
#include "panel_application.h"

using namespace Qt::StringLiterals;

class tst_ControlsDialogFooter : public DialogTest
{
    Q_OBJECT

private slots:
    void cleanup() { QCOMPARE(end(), QStringList()); }

    void footerTells();
    void footerWords_data();
    void footerWords();
    void footerHalves();
    void footerPressed();
};

void tst_ControlsDialogFooter::footerTells()
{
    make({},
         "DialogFooter { objectName: 'footer'; applyTitle: 'Save'; onApply: screen.note('apply')\n"
         "onCancel: screen.note('cancel') }");
    show();
    const QRect footer = placeOf(u"footer"_s);
    click(footer.topLeft() + QPoint(30, 40));
    click(footer.topRight() + QPoint(-30, 40));
    QCOMPARE(log(), (QStringList{u"cancel"_s, u"apply"_s}));
    QVERIFY(pressByAccessibility(findAccessible(frame(), QAccessible::Button, u"Save"_s)));
    QVERIFY(pressByAccessibility(findAccessible(frame(), QAccessible::Button, u"Cancel"_s)));
    QCOMPARE(log().mid(2), (QStringList{u"apply"_s, u"cancel"_s}));
    QTest::keyClick(&m_scene->window(), Qt::Key_Return); // the first of the dialog has the focus
    QTest::keyClick(&m_scene->window(), Qt::Key_Right);
    QTest::keyClick(&m_scene->window(), Qt::Key_Return);
    QCOMPARE(log().mid(4), (QStringList{u"cancel"_s, u"apply"_s}));
}

void tst_ControlsDialogFooter::footerWords_data()
{
    QTest::addColumn<QByteArray>("properties");
    QTest::addColumn<QStringList>("words");

    QTest::newRow("as they are") << QByteArray("applyTitle: 'Weiß'") << QStringList{u"Cancel"_s, u"Weiß"_s};
    QTest::newRow("in capitals") << QByteArray("applyTitle: 'Weiß'; isUppercase: true")
                                 << QStringList{u"CANCEL"_s, u"WEISS"_s};
    QTest::newRow("in capitals, Cyrillic") << QByteArray("applyTitle: 'Сохранить'; isUppercase: true")
                                           << QStringList{u"CANCEL"_s, u"СОХРАНИТЬ"_s};
    QTest::newRow("plain") << QByteArray("applyTitle: '<b>x</b>'") << QStringList{u"Cancel"_s, u"<b>x</b>"_s};
}

void tst_ControlsDialogFooter::footerWords()
{
    QFETCH(QByteArray, properties);
    QFETCH(QStringList, words);

    make({}, "DialogFooter { objectName: 'footer'; " + properties + " }");
    show();
    QStringList found;
    const QList<QQuickItem *> halves = m_scene->item(u"footer"_s)->childItems();
    for (QQuickItem *half : halves) {
        for (QQuickItem *item : half->childItems()) {
            if (item->inherits("QQuickText")) {
                found.append(item->property("text").toString());
                QCOMPARE(item->property("textFormat").toInt(), int(Qt::PlainText));
                QCOMPARE(item->property("font").value<QFont>().bold(), found.size() == 2);
            }
        }
    }
    QCOMPARE(found, words);
}

void tst_ControlsDialogFooter::footerHalves()
{
    make({}, "DialogFooter { objectName: 'footer'; applyTitle: 'Save' }");
    show();
    const QRect footer = placeOf(u"footer"_s);
    QCOMPARE(footer.height(), head + 1); // 112 and a line of 2 of the design
    const QRect cancel = sceneRectangle(findAccessible(frame(), QAccessible::Button, u"Cancel"_s));
    const QRect apply = sceneRectangle(findAccessible(frame(), QAccessible::Button, u"Save"_s));
    QVERIFY(std::abs(cancel.width() - apply.width()) <= 1);
    QCOMPARE(apply.left() - cancel.right(), 2); // the line between
    QCOMPARE(cancel.left(), footer.left());
    QCOMPARE(apply.right(), footer.right());
    const QImage picture = m_scene->window().grabWindow();
    QCOMPARE(picture.pixelColor(footer.left() + 100, footer.top()), QColor(Qt::black));
    QCOMPARE(picture.pixelColor(cancel.right() + 1, footer.center().y()), QColor(Qt::black));
    QCOMPARE(picture.pixelColor(cancel.right() - 1, footer.center().y()), QColor(Qt::white));
}

void tst_ControlsDialogFooter::footerPressed()
{
    make({}, "DialogFooter { objectName: 'footer'; applyTitle: 'Save' }");
    m_scene->window().setColor(Qt::white);
    show();
    const QRect outer = sceneRectangle(frame());
    const QImage rest = m_scene->window().grabWindow();
    const QRect apply = sceneRectangle(findAccessible(frame(), QAccessible::Button, u"Save"_s));
    QTest::mousePress(&m_scene->window(), Qt::LeftButton, {}, apply.center());
    const QImage pressed = m_scene->window().grabWindow();
    QCOMPARE(pressed.pixelColor(apply.left() + 4, apply.top() + 4), QColor(Qt::black));
    QCOMPARE(pressed.pixelColor(apply.left() - 4, apply.top() + 4), QColor(Qt::white));
    QVERIFY2(pressed.pixelColor(outer.bottomRight()) == rest.pixelColor(outer.bottomRight()),
             "the round corner of the dialog stays round");
    QTest::mouseRelease(&m_scene->window(), Qt::LeftButton, {}, QPoint(300, 790));
    QCOMPARE(log(), QStringList());
}

PANEL_TEST_MAIN(tst_ControlsDialogFooter)
#include "tst_controls_dialog_footer.moc"
