// The QML module as it lies in the program: resources, description, compiled units.

#include <private/qqmlmetatype_p.h>

#include <QFile>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QTest>

#include <memory>

using namespace Qt::StringLiterals;

namespace {

const QString prefix = u":/qt/qml/com/lindenreed/picture_stand/"_s;

QByteArray resource(const QString &path)
{
    QFile file(prefix + path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("missing");
}

} // namespace

class tst_QmlModule : public QObject
{
    Q_OBJECT

private slots:
    void description();
    void descriptionsOfTheFolders();
    void components_data();
    void components();
    void moduleIsRegistered_data();
    void moduleIsRegistered();
};

void tst_QmlModule::description()
{
    QCOMPARE(resource(u"qmldir"_s),
             QByteArray("module com.lindenreed.picture_stand\n"
                        "typeinfo picture_stand.qmltypes\n"
                        "prefer :/qt/qml/com/lindenreed/picture_stand/\n"
                        "Main 1.0 qml/Main.qml\n"
                        "SlideshowMenu 1.0 qml/SlideshowMenu.qml\n"
                        "SlideShow 1.0 qml/SlideShow.qml\n"
                        "SettingsFrontlight 1.0 qml/SettingsFrontlight.qml\n"
                        "RectangleCurrentDate 1.0 qml/RectangleCurrentDate.qml\n"
                        "RectangleCreatedDate 1.0 qml/RectangleCreatedDate.qml\n"
                        "Playlists 1.0 qml/Playlists.qml\n"
                        "ExplorerFooter 1.0 qml/explorer/ExplorerFooter.qml\n"
                        "depends QtQuick\n"));
}

void tst_QmlModule::descriptionsOfTheFolders()
{
    const QByteArray line("prefer :/qt/qml/com/lindenreed/picture_stand/\n");
    QCOMPARE(resource(u"qml/qmldir"_s), line);
    QCOMPARE(resource(u"qml/explorer/qmldir"_s), line);
    QVERIFY(!QFile::exists(prefix + u"picture_stand.qmltypes"_s));
}

void tst_QmlModule::components_data()
{
    QTest::addColumn<QString>("path");

    QTest::newRow("Main") << u"qml/Main.qml"_s;
    QTest::newRow("SlideshowMenu") << u"qml/SlideshowMenu.qml"_s;
    QTest::newRow("SlideShow") << u"qml/SlideShow.qml"_s;
    QTest::newRow("SettingsFrontlight") << u"qml/SettingsFrontlight.qml"_s;
    QTest::newRow("RectangleCurrentDate") << u"qml/RectangleCurrentDate.qml"_s;
    QTest::newRow("RectangleCreatedDate") << u"qml/RectangleCreatedDate.qml"_s;
    QTest::newRow("Playlists") << u"qml/Playlists.qml"_s;
    QTest::newRow("ExplorerFooter") << u"qml/explorer/ExplorerFooter.qml"_s;
}

void tst_QmlModule::components()
{
    QFETCH(QString, path);

    QVERIFY(QFile::exists(prefix + path));
    // The unit that the QML compiler made at build time, not one made from the text at run time.
    const QUrl url(u"qrc"_s + prefix + path);
    QQmlMetaType::CachedUnitLookupError error = QQmlMetaType::CachedUnitLookupError::NoError;
    const QQmlPrivate::CachedQmlUnit *unit = QQmlMetaType::findCachedCompilationUnit(url, &error);
    QVERIFY(unit);
    QVERIFY(unit->qmlData);
    QVERIFY(unit->aotCompiledFunctions);
}

void tst_QmlModule::moduleIsRegistered_data()
{
    QTest::addColumn<QByteArray>("imported");
    QTest::addColumn<bool>("known");

    QTest::newRow("its own version") << QByteArray("com.lindenreed.picture_stand 1.0") << true;
    QTest::newRow("a version that is not there") << QByteArray("com.lindenreed.picture_stand 2.0") << false;
    QTest::newRow("the name of the native types") << QByteArray("com.lindenreed.picturestand 1.0") << false;
}

void tst_QmlModule::moduleIsRegistered()
{
    QFETCH(QByteArray, imported);
    QFETCH(bool, known);

    // What App::run registers.
    qmlRegisterModule("com.lindenreed.picturestand", 1, 0);
    QQmlEngine engine;
    engine.addImportPath(u"qrc:/qt/qml"_s);
    QQmlComponent component(&engine);
    component.setData("import " + imported + "\nExplorerFooter {}", QUrl(u"qrc:/test.qml"_s));
    const std::unique_ptr<QObject> footer(component.create());
    QVERIFY2(bool(footer) == known, qUtf8Printable(component.errorString()));
}

QTEST_GUILESS_MAIN(tst_QmlModule)
#include "tst_qml_module.moc"
