// The QML module as it lies in the program: resources, description, compiled units.

#include "compiled_unit.h"

#include <QDirIterator>
#include <QFile>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QTest>

#include <dlfcn.h>

using namespace Qt::StringLiterals;

namespace {

const QString prefix = u":/qt/qml/com/lindenreed/picture_stand/"_s;

QByteArray resource(const QString &path)
{
    QFile file(prefix + path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("missing");
}

QStringList allFiles()
{
    QStringList found;
    QDirIterator files(prefix, QDir::Files, QDirIterator::Subdirectories);
    while (files.hasNext())
        found.append(files.next().mid(prefix.size()));
    found.sort();
    return found;
}

/// Of the collections that were registered, one after another.
QList<int> &formatVersions()
{
    static QList<int> versions;
    return versions;
}

} // namespace

/// Stands in front of Qt's own, and calls it.
bool qRegisterResourceData(int version, const unsigned char *tree, const unsigned char *name,
                           const unsigned char *data)
{
    using Function = bool (*)(int, const unsigned char *, const unsigned char *, const unsigned char *);
    static const auto original
        = reinterpret_cast<Function>(dlsym(RTLD_NEXT, "_Z21qRegisterResourceDataiPKhS0_S0_"));
    formatVersions().append(version);
    return original(version, tree, name, data);
}

using Step = void (*)();

// The macros want to stand outside of namespaces.
static void takeAwayDescription()
{
    Q_CLEANUP_RESOURCE(module_description);
}
static void giveBackDescription()
{
    Q_INIT_RESOURCE(module_description);
}
static void takeAwayComponents()
{
    Q_CLEANUP_RESOURCE(picture_stand_core_raw_qml_0);
}
static void giveBackComponents()
{
    Q_INIT_RESOURCE(picture_stand_core_raw_qml_0);
}
static void takeAwayFolderDescriptions()
{
    Q_CLEANUP_RESOURCE(folder_descriptions);
}
static void giveBackFolderDescriptions()
{
    Q_INIT_RESOURCE(folder_descriptions);
}

class tst_QmlModule : public QObject
{
    Q_OBJECT

private slots:
    void description();
    void descriptionsOfTheFolders();
    void collections_data();
    void collections();
    void components_data();
    void components();
    void unitsOfOtherAddresses_data();
    void unitsOfOtherAddresses();
    void moduleIsRegistered_data();
    void moduleIsRegistered();
    void namesDifferByAnUnderscore_data();
    void namesDifferByAnUnderscore();
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

void tst_QmlModule::collections_data()
{
    QTest::addColumn<Step>("takeAway");
    QTest::addColumn<Step>("giveBack");
    QTest::addColumn<QStringList>("files");

    QTest::newRow("the module's description")
        << &takeAwayDescription << &giveBackDescription << QStringList{u"qmldir"_s};
    QStringList components;
    for (const QByteArray &line : resource(u"qmldir"_s).split('\n')) {
        if (line.endsWith(".qml"))
            components.append(QString::fromLatin1(line.split(' ').constLast()));
    }
    QCOMPARE(components.size(), 30);
    QTest::newRow("the components") << &takeAwayComponents << &giveBackComponents << components;
    QTest::newRow("the descriptions of the folders")
        << &takeAwayFolderDescriptions << &giveBackFolderDescriptions
        << QStringList{u"qml/qmldir"_s, u"qml/explorer/qmldir"_s};
}

void tst_QmlModule::collections()
{
    QFETCH(Step, takeAway);
    QFETCH(Step, giveBack);
    QFETCH(QStringList, files);

    // Each file as it was written.
    const QStringList all = allFiles();
    QCOMPARE(all.size(), 3 + 30);
    for (const QString &path : std::as_const(files)) {
        QVERIFY2(all.contains(path), qUtf8Printable(path));
        QFile source(QStringLiteral(MODULE_FOLDER) + u'/' + path);
        QVERIFY2(source.open(QIODevice::ReadOnly), qUtf8Printable(path));
        QVERIFY2(resource(path) == source.readAll(), qUtf8Printable(path));
    }
    // These and no others go with their collection.
    takeAway();
    QStringList gone = all;
    for (const QString &path : allFiles())
        gone.removeOne(path);
    formatVersions().clear();
    giveBack();
    files.sort();
    QCOMPARE(gone, files);
    QCOMPARE(allFiles(), all);
    QCOMPARE(formatVersions(), QList<int>{3});
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
    const QQmlPrivate::CachedQmlUnit *unit = compiledUnit(url);
    QVERIFY(unit);
    QVERIFY(unit->qmlData);
    QVERIFY(unit->aotCompiledFunctions);
}

void tst_QmlModule::unitsOfOtherAddresses_data()
{
    QTest::addColumn<QUrl>("url");
    QTest::addColumn<bool>("known");

    const QString path = u"/qt/qml/com/lindenreed/picture_stand/qml/Main.qml"_s;
    QTest::newRow("the component") << QUrl(u"qrc:"_s + path) << true;
    QTest::newRow("a file of that path") << QUrl(u"file:"_s + path) << false;
    QTest::newRow("another component") << QUrl(u"qrc:"_s + path + u".qml"_s) << false;
}

void tst_QmlModule::unitsOfOtherAddresses()
{
    QFETCH(QUrl, url);
    QFETCH(bool, known);

    QCOMPARE(compiledUnit(url) != nullptr, known);
}

void tst_QmlModule::moduleIsRegistered_data()
{
    QTest::addColumn<QByteArray>("imported");
    QTest::addColumn<bool>("known");

    QTest::newRow("its own version") << QByteArray("com.lindenreed.picture_stand 1.0") << true;
    QTest::newRow("a version that is not there") << QByteArray("com.lindenreed.picture_stand 2.0") << false;
}

void tst_QmlModule::moduleIsRegistered()
{
    QFETCH(QByteArray, imported);
    QFETCH(bool, known);

    // Nothing leads the engine to the description: what it knows of the module is the registration.
    QQmlEngine engine;
    QStringList paths = engine.importPathList();
    paths.removeAll(u"qrc:/qt/qml"_s); // where later versions of Qt look by themselves
    engine.setImportPathList(paths);
    QQmlComponent component(&engine);
    component.setData("import QtQml 2.0\nimport " + imported + "\nQtObject {}", QUrl(u"qrc:/test.qml"_s));
    QVERIFY2(component.isReady() == known, qUtf8Printable(component.errorString()));
}

void tst_QmlModule::namesDifferByAnUnderscore_data()
{
    moduleIsRegistered_data();
    QTest::newRow("the name of the native types") << QByteArray("com.lindenreed.picturestand 1.0") << false;
}

void tst_QmlModule::namesDifferByAnUnderscore()
{
    QFETCH(QByteArray, imported);
    QFETCH(bool, known);

    // What App::run registers.
    qmlRegisterModule("com.lindenreed.picturestand", 1, 0);
    QQmlEngine engine;
    engine.addImportPath(u"qrc:/qt/qml"_s);
    QQmlComponent component(&engine);
    component.setData("import " + imported + "\nMouseAreaDelegate {}", QUrl(u"qrc:/test.qml"_s));
    QVERIFY2(component.isReady() == known, qUtf8Printable(component.errorString()));
}

QTEST_GUILESS_MAIN(tst_QmlModule)
#include "tst_qml_module.moc"
