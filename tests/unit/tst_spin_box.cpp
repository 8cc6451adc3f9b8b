// The number between two buttons.

#include "panel_application.h"
#include "settings_screens.h"

#include <QQmlComponent>
#include <QQmlProperty>

#include <memory>

class tst_SpinBox : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { stored_database::remove(); }
    void init() { m_test = std::make_unique<SettingsScreens>(); }
    void cleanup() { m_test.reset(); }

    void firstValues();
    void parts();
    void steps_data();
    void steps();
    void ownLimits();
    void assistiveSteps();
    void keys();
    void shownNumber();

private:
    void with(const QVariantMap &properties, const std::function<void(RunningApp &, QQuickItem *)> &body);
    QStringList taken() { return std::exchange(m_lines, {}); }

    std::unique_ptr<SettingsScreens> m_test;
    QStringList m_lines;

private slots:
    void note(double value) { m_lines.append(QString::number(value)); }
};

void tst_SpinBox::with(const QVariantMap &properties,
                       const std::function<void(RunningApp &, QQuickItem *)> &body)
{
    m_test->run(u"settings_slideshow"_s, [&](RunningApp &running) {
        QQmlComponent component(qmlEngine(running.window));
        component.setData("import com.lindenreed.picture_stand 1.0\nSpinBox {}", QUrl(u"qrc:/box.qml"_s));
        const std::unique_ptr<QObject> object(component.createWithInitialProperties(properties));
        auto *const box = qobject_cast<QQuickItem *>(object.get());
        QVERIFY2(box, qPrintable(component.errorString()));
        box->setParentItem(running.window->contentItem());
        box->setPosition(QPointF(100, 600));
        m_lines.clear();
        QVERIFY(connect(box, SIGNAL(changeValue(double)), this, SLOT(note(double))));
        body(running, box);
    });
}

namespace {

QQuickItem *part(QQuickItem *box, const char *id)
{
    return qobject_cast<QQuickItem *>(
        qmlContext(box->childItems().constFirst())->objectForName(QString::fromLatin1(id)));
}

} // namespace

void tst_SpinBox::firstValues()
{
    with({}, [](RunningApp &, QQuickItem *box) {
        QCOMPARE(box->property("value").toDouble(), 50.0);
        QCOMPARE(box->property("min_value").toDouble(), 0.0);
        QCOMPARE(box->property("max_value").toDouble(), 100.0);
        QCOMPARE(box->property("step").toDouble(), 1.0);
        for (const char *name : {"value", "min_value", "max_value", "step"})
            QCOMPARE(QQmlProperty(box, QString::fromLatin1(name)).propertyType(), int(QMetaType::Double));
    });
}

void tst_SpinBox::parts()
{
    with({}, [](RunningApp &, QQuickItem *box) {
        const QQuickItem *const minus = part(box, "minus");
        const QQuickItem *const number = part(box, "number");
        const QQuickItem *const plus = part(box, "plus");
        QCOMPARE(minus->property("icon").toString(), u"image://resource/minus"_s);
        QCOMPARE(minus->property("pressedIcon").toString(), u"image://resource/minus_inv"_s);
        QCOMPARE(plus->property("icon").toString(), u"image://resource/plus"_s);
        QCOMPARE(plus->property("pressedIcon").toString(), u"image://resource/plus_inv"_s);
        const auto value = [&](const QString &expression) {
            return QQmlExpression(qmlContext(box->childItems().constFirst()), box, expression)
                .evaluate()
                .toInt();
        };
        QCOMPARE(number->width(), value(u"Global.dp(134 * 0.53)"_s));
        QCOMPARE(number->property("styledFont").toInt(), value(u"FontStyles.BodyS"_s));
        QCOMPARE(number->property("horizontalAlignment").toInt(), int(Qt::AlignHCenter));
        QCOMPARE(minus->x(), 0.0);
        QCOMPARE(number->x(), minus->width());
        QCOMPARE(plus->x(), number->x() + number->width());
        QCOMPARE(box->implicitWidth(), plus->x() + plus->width());
        QCOMPARE(box->implicitHeight(), minus->height());
    });
}

void tst_SpinBox::steps_data()
{
    QTest::addColumn<double>("value");
    QTest::addColumn<double>("step");
    QTest::addColumn<QByteArray>("button");
    QTest::addColumn<QString>("then");

    QTest::newRow("plus") << 50.0 << 1.0 << QByteArray("plus") << u"51"_s;
    QTest::newRow("minus") << 50.0 << 1.0 << QByteArray("minus") << u"49"_s;
    QTest::newRow("a fraction") << 50.0 << 0.5 << QByteArray("plus") << u"50.5"_s;
    QTest::newRow("beyond the upper end") << 99.5 << 1.0 << QByteArray("plus") << u"100"_s;
    QTest::newRow("at the upper end") << 100.0 << 1.0 << QByteArray("plus") << u"100"_s;
    QTest::newRow("beyond the lower end") << 0.25 << 1.0 << QByteArray("minus") << u"0"_s;
    QTest::newRow("at the lower end") << 0.0 << 1.0 << QByteArray("minus") << u"0"_s;
    QTest::newRow("minus from above the upper end") << 110.0 << 1.0 << QByteArray("minus") << u"109"_s;
    QTest::newRow("plus from below the lower end") << -10.0 << 1.0 << QByteArray("plus") << u"-9"_s;
}

void tst_SpinBox::steps()
{
    QFETCH(double, value);
    QFETCH(double, step);
    QFETCH(QByteArray, button);
    QFETCH(QString, then);

    with({{u"value"_s, value}, {u"step"_s, step}}, [&](RunningApp &running, QQuickItem *box) {
        SettingsScreens::tap(running, part(box, button.constData()));
        QCOMPARE(box->property("value").toDouble(), then.toDouble());
        QCOMPARE(taken(), QStringList{then}); // also where it stays
        QCOMPARE(part(box, "number")->property("text").toString(), then);
    });
}

void tst_SpinBox::ownLimits()
{
    const QVariantMap properties{
        {u"value"_s, 9.0}, {u"min_value"_s, 8.0}, {u"max_value"_s, 10.0}, {u"step"_s, 5.0}};
    with(properties, [this](RunningApp &running, QQuickItem *box) {
        SettingsScreens::tap(running, part(box, "plus"));
        SettingsScreens::tap(running, part(box, "minus"));
        QCOMPARE(taken(), (QStringList{u"10"_s, u"8"_s}));
    });
}

void tst_SpinBox::assistiveSteps()
{
    with({}, [this](RunningApp &, QQuickItem *box) {
        QCOMPARE(accessible(box)->role(), QAccessible::SpinBox);
        QVERIFY(actByAccessibility(box, QAccessibleActionInterface::increaseAction()));
        QCOMPARE(accessibleName(box), u"51"_s);
        QVERIFY(actByAccessibility(box, QAccessibleActionInterface::decreaseAction()));
        QCOMPARE(taken(), (QStringList{u"51"_s, u"50"_s}));
    });
}

void tst_SpinBox::keys()
{
    with({}, [this](RunningApp &running, QQuickItem *box) {
        part(box, "minus")->forceActiveFocus();
        for (const Qt::Key key :
             {Qt::Key_Return, Qt::Key_Right, Qt::Key_Return, Qt::Key_Return, Qt::Key_Left, Qt::Key_Return})
            SettingsScreens::key(running, key);
        QCOMPARE(taken(), (QStringList{u"49"_s, u"50"_s, u"51"_s, u"50"_s}));
    });
}

void tst_SpinBox::shownNumber()
{
    with({{u"value"_s, 12.75}}, [](RunningApp &, QQuickItem *box) {
        QCOMPARE(part(box, "number")->property("text").toString(), u"12.75"_s);
        box->setProperty("value", 7);
        QCOMPARE(part(box, "number")->property("text").toString(), u"7"_s);
    });
}

PANEL_TEST_MAIN(tst_SpinBox)
#include "tst_spin_box.moc"
