// The QML module as it lies in the program: resources, description, compiled units.

#include <private/qqmlmetatype_p.h>

#include <QDirIterator>
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
    void contents();
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
                        "SettingsCurrentDateTime 1.0 qml/SettingsCurrentDateTime.qml\n"
                        "SettingsSlideshow 1.0 qml/SettingsSlideshow.qml\n"
                        "SpinBox 1.0 qml/SpinBox.qml\n"
                        "SlideshowMenu 1.0 qml/SlideshowMenu.qml\n"
                        "SlideShow 1.0 qml/SlideShow.qml\n"
                        "SettingsFrontlight 1.0 qml/SettingsFrontlight.qml\n"
                        "SettingsCustomizeCreatedDate 1.0 qml/SettingsCustomizeCreatedDate.qml\n"
                        "SettingsCustomizeCurrentDate 1.0 qml/SettingsCustomizeCurrentDate.qml\n"
                        "PositionContextMenu 1.0 qml/PositionContextMenu.qml\n"
                        "SettingsCustomizeDate 1.0 qml/SettingsCustomizeDate.qml\n"
                        "SettingsCreatedDateTime 1.0 qml/SettingsCreatedDateTime.qml\n"
                        "RectangleCurrentDate 1.0 qml/RectangleCurrentDate.qml\n"
                        "RectangleCreatedDate 1.0 qml/RectangleCreatedDate.qml\n"
                        "Playlists 1.0 qml/Playlists.qml\n"
                        "RoundedImage 1.0 qml/RoundedImage.qml\n"
                        "SelectPhotos 1.0 qml/SelectPhotos.qml\n"
                        "Playlist 1.0 qml/Playlist.qml\n"
                        "GridFolderDelegate 1.0 qml/explorer/GridFolderDelegate.qml\n"
                        "GridImageDelegate 1.0 qml/explorer/GridImageDelegate.qml\n"
                        "GridInternalDelegate 1.0 qml/explorer/GridInternalDelegate.qml\n"
                        "ExplorerGridView 1.0 qml/explorer/ExplorerGridView.qml\n"
                        "GridEmptyDelegate 1.0 qml/explorer/GridEmptyDelegate.qml\n"
                        "ExplorerFooter 1.0 qml/explorer/ExplorerFooter.qml\n"
                        "GridSDCardDelegate 1.0 qml/explorer/GridSDCardDelegate.qml\n"
                        "GridOTGDelegate 1.0 qml/explorer/GridOTGDelegate.qml\n"
                        "CheckBoxTransparent 1.0 qml/explorer/CheckBoxTransparent.qml\n"
                        "ExplorerListView 1.0 qml/explorer/ExplorerListView.qml\n"
                        "ExplorerLoadingImage 1.0 qml/explorer/ExplorerLoadingImage.qml\n"
                        "MouseAreaDelegate 1.0 qml/explorer/MouseAreaDelegate.qml\n"
                        "depends QtQuick\n"));
}

void tst_QmlModule::descriptionsOfTheFolders()
{
    const QByteArray line("prefer :/qt/qml/com/lindenreed/picture_stand/\n");
    QCOMPARE(resource(u"qml/qmldir"_s), line);
    QCOMPARE(resource(u"qml/explorer/qmldir"_s), line);
    QVERIFY(!QFile::exists(prefix + u"picture_stand.qmltypes"_s));
}

void tst_QmlModule::contents()
{
    // Every file of the module and no other, each as it was written.
    QStringList expected{u"qmldir"_s, u"qml/qmldir"_s, u"qml/explorer/qmldir"_s};
    const QList<QByteArray> lines = resource(u"qmldir"_s).split('\n');
    for (const QByteArray &line : lines) {
        if (line.endsWith(".qml"))
            expected.append(QString::fromLatin1(line.split(' ').constLast()));
    }
    QCOMPARE(expected.size(), 3 + 30);
    QStringList found;
    QDirIterator files(prefix, QDir::Files, QDirIterator::Subdirectories);
    while (files.hasNext())
        found.append(files.next().mid(prefix.size()));
    expected.sort();
    found.sort();
    QCOMPARE(found, expected);
    for (const QString &path : std::as_const(found)) {
        QFile source(QStringLiteral(MODULE_FOLDER) + u'/' + path);
        QVERIFY2(source.open(QIODevice::ReadOnly), qUtf8Printable(path));
        QVERIFY2(resource(path) == source.readAll(), qUtf8Printable(path));
    }
}

void tst_QmlModule::components_data()
{
    QTest::addColumn<QString>("path");

    QTest::newRow("Main") << u"qml/Main.qml"_s;
    QTest::newRow("SettingsCurrentDateTime") << u"qml/SettingsCurrentDateTime.qml"_s;
    QTest::newRow("SettingsSlideshow") << u"qml/SettingsSlideshow.qml"_s;
    QTest::newRow("SpinBox") << u"qml/SpinBox.qml"_s;
    QTest::newRow("SlideshowMenu") << u"qml/SlideshowMenu.qml"_s;
    QTest::newRow("SlideShow") << u"qml/SlideShow.qml"_s;
    QTest::newRow("SettingsFrontlight") << u"qml/SettingsFrontlight.qml"_s;
    QTest::newRow("SettingsCustomizeCreatedDate") << u"qml/SettingsCustomizeCreatedDate.qml"_s;
    QTest::newRow("SettingsCustomizeCurrentDate") << u"qml/SettingsCustomizeCurrentDate.qml"_s;
    QTest::newRow("PositionContextMenu") << u"qml/PositionContextMenu.qml"_s;
    QTest::newRow("SettingsCustomizeDate") << u"qml/SettingsCustomizeDate.qml"_s;
    QTest::newRow("SettingsCreatedDateTime") << u"qml/SettingsCreatedDateTime.qml"_s;
    QTest::newRow("RectangleCurrentDate") << u"qml/RectangleCurrentDate.qml"_s;
    QTest::newRow("RectangleCreatedDate") << u"qml/RectangleCreatedDate.qml"_s;
    QTest::newRow("Playlists") << u"qml/Playlists.qml"_s;
    QTest::newRow("RoundedImage") << u"qml/RoundedImage.qml"_s;
    QTest::newRow("SelectPhotos") << u"qml/SelectPhotos.qml"_s;
    QTest::newRow("Playlist") << u"qml/Playlist.qml"_s;
    QTest::newRow("GridFolderDelegate") << u"qml/explorer/GridFolderDelegate.qml"_s;
    QTest::newRow("GridImageDelegate") << u"qml/explorer/GridImageDelegate.qml"_s;
    QTest::newRow("GridInternalDelegate") << u"qml/explorer/GridInternalDelegate.qml"_s;
    QTest::newRow("ExplorerGridView") << u"qml/explorer/ExplorerGridView.qml"_s;
    QTest::newRow("GridEmptyDelegate") << u"qml/explorer/GridEmptyDelegate.qml"_s;
    QTest::newRow("ExplorerFooter") << u"qml/explorer/ExplorerFooter.qml"_s;
    QTest::newRow("GridSDCardDelegate") << u"qml/explorer/GridSDCardDelegate.qml"_s;
    QTest::newRow("GridOTGDelegate") << u"qml/explorer/GridOTGDelegate.qml"_s;
    QTest::newRow("CheckBoxTransparent") << u"qml/explorer/CheckBoxTransparent.qml"_s;
    QTest::newRow("ExplorerListView") << u"qml/explorer/ExplorerListView.qml"_s;
    QTest::newRow("ExplorerLoadingImage") << u"qml/explorer/ExplorerLoadingImage.qml"_s;
    QTest::newRow("MouseAreaDelegate") << u"qml/explorer/MouseAreaDelegate.qml"_s;
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
    component.setData("import " + imported + "\nMouseAreaDelegate {}", QUrl(u"qrc:/test.qml"_s));
    const std::unique_ptr<QObject> item(component.create());
    QVERIFY2(bool(item) == known, qUtf8Printable(component.errorString()));
}

QTEST_GUILESS_MAIN(tst_QmlModule)
#include "tst_qml_module.moc"
