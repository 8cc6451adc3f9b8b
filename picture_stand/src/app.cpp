#include "app.h"

#include "image_adapter.h"
#include "storage.h"

#include <boardconf.h>
#include <shared_tools/eink_interface.h>
#include <slateview.h>

#include <QGuiApplication>
#include <QPointer>
#include <QQmlApplicationEngine>
#include <QQmlContext>
#include <QTime>
#include <QTimer>

using namespace Qt::StringLiterals;

namespace lindenreed::picture_stand {

namespace {

// The first turn that is let through counts as a change, whatever the device says. One flag for the process.
bool orientationWasSet = false;

bool isUpright(int orientation)
{
    return orientation == 0 || orientation == 3;
}

utilities::EinkPlatform *platform()
{
    return utilities::EinkInterface::instance().platform();
}

} // namespace

App::App(QObject *parent)
    : QObject(parent)
    , m_keyMap(readKeyMap())
{
}

int App::run(QGuiApplication *)
{
    platform()->setStartupFlag(1);
    platform()->setEventHandler([app = QPointer<App>(this)](int type, int par1, int par2) {
        if (app)
            app->onDeviceEvent(type, par1, par2);
        return 0;
    });

    QQmlApplicationEngine engine;
    startDateTimer();
    SetPanelType(1);
    emit screenChanged();
    m_settingsModel.loadConfig();
    m_fontModel.loadFonts();
    connectFolders();
    m_coverProvider.setup();
    m_folderModel.changeFolder(u"/mnt/ext1/Photo"_s);
    connectModels();

    qmlRegisterType<StorageItemType>("com.lindenreed.picturestand", 1, 0, "StorageItemDataRoles");
    qmlRegisterType<FolderModel>("com.lindenreed.picturestand", 1, 0, "FolderModelModeRoles");
    qmlRegisterType<FontModel>("com.lindenreed.picturestand", 1, 0, "FontDataRoles");
    qmlRegisterType<SettingsModel>("com.lindenreed.picturestand", 1, 0, "SettingsDataRoles");
    qmlRegisterType<PlaylistModel>("com.lindenreed.picturestand", 1, 0, "PlaylistDataRoles");
    engine.addImageProvider(u"image_provider"_s, new ImageAdapter(&m_imageProvider));
    engine.addImageProvider(u"cover_provider"_s, new CoverAdapter(&m_coverProvider));

    QQmlContext *context = engine.rootContext();
    context->setContextProperty(u"FontModel"_s, &m_fontModel);
    context->setContextProperty(u"SettingsModel"_s, &m_settingsModel);
    context->setContextProperty(u"SlideshowModel"_s, &m_slideshowModel);
    context->setContextProperty(u"FolderModel"_s, &m_folderModel);
    context->setContextProperty(u"BreadcrumbsModel"_s, &m_breadcrumbsModel);
    context->setContextProperty(u"PlaylistModel"_s, &m_playlistModel);
    context->setContextProperty(u"App"_s, this);

    int task = 0;
    int subtask = 0;
    GetPreviousTask(&task, &subtask);
    if (const sv_framebuffer_info *previous = GetTaskFramebufferInfo(task))
        changeOrientation(previous->orientation);

#if QT_VERSION >= QT_VERSION_CHECK(6, 5, 0)
    engine.loadFromModule("com.lindenreed.picture_stand", "Main");
#else
    engine.addImportPath(u"qrc:/qt/qml"_s);
    engine.load(QUrl(u"qrc:/qt/qml/com/lindenreed/picture_stand/qml/Main.qml"_s));
#endif
    if (engine.rootObjects().isEmpty())
        return -1;
    return QGuiApplication::exec();
}

void App::connectFolders()
{
    connect(&m_folderModel, &FolderModel::changedFolder, &m_breadcrumbsModel,
            &BreadcrumbsModel::changeFolder);
    connect(&m_breadcrumbsModel, &BreadcrumbsModel::changedFolder, &m_folderModel,
            &FolderModel::changeFolder);
    // The first use of the storages: it begins the first look at them.
    connect(&Storage::instance(), &Storage::storageChanged, &m_folderModel, &FolderModel::storageChanged);
}

void App::connectModels()
{
    connect(&m_settingsModel, &SettingsModel::change_picture_timeChanged, &m_settingsModel,
            [this] { m_slideshowModel.intervalChange(m_settingsModel.changePictureTime()); });
    connect(&m_settingsModel, &SettingsModel::shuffleChanged, &m_settingsModel,
            [this] { m_slideshowModel.shuffleChange(m_settingsModel.shuffle()); });
    connect(&m_slideshowModel, &SlideshowModel::loadToCache, &m_slideshowModel,
            [this](const QStringList &images, int index) { m_imageProvider.loadToCache(images, index); });
    connect(this, &App::changedView, this,
            [this] { m_settingsModel.changedView(m_currentView, m_prevView); });
    connect(&m_playlistModel, &PlaylistModel::activeIdChanged, &m_playlistModel,
            [this] { m_settingsModel.setActivePlaylist(static_cast<int>(m_playlistModel.activeId())); });
}

int App::screenWidth() const
{
    return ScreenWidth();
}

int App::screenHeight() const
{
    return GetPanelType() == 0 ? ScreenHeight() : ScreenHeight() - PanelHeight();
}

void App::setBackView(const QString &view)
{
    if (m_backView == view)
        return;
    m_backView = view;
    emit backViewChanged();
}

void App::showPanel(bool show)
{
    SetPanelType(show ? 1 : 0);
    emit screenChanged();
}

void App::changeOrientation(int n)
{
    const bool allowed = n == 0 || m_currentView == "slideshow"_L1 || (n == 3 && IsDeviceSupportUpSideDown());
    if (!allowed)
        return;
    const int current = orientationWasSet ? GetOrientation() : -1;
    orientationWasSet = true;
    if (current == n)
        return;

    if (isUpright(current) != isUpright(n))
        platform()->prepareAspectChange(0);
    SetOrientation(n);
    ClearScreen();
    SendEvent(GetEventHandler(), 212, 32, n);
    SendEvent(GetEventHandler(), 43, 0, 0);
    emit screenChanged();
    QTimer::singleShot(100, this, &App::orientationChanged);
    QTimer::singleShot(500, this, [] {
        platform()->setScreenUpdateMode(device_display_colormask() != 0 ? 2 : 1);
        platform()->requestScreenRefresh(1, 1);
    });
}

void App::updateScreen()
{
    if (device_display_colormask() != 0)
        platform()->setScreenUpdateMode(5);
}

void App::quit()
{
    m_settingsModel.onExit(m_currentView);
    QCoreApplication::quit();
}

void App::changeView(QString view)
{
    if (view == m_currentView)
        return;
    m_prevView = m_currentView;
    m_currentView = view;

    // The show alone may be sideways.
    if (m_prevView == "slideshow"_L1) {
        const int orientation = GetOrientation();
        if (orientation != 0 && m_currentView != "slideshow"_L1
            && !(orientation == 3 && IsDeviceSupportUpSideDown()))
            changeOrientation(0);
    }
    emit changedView(m_currentView);
}

void App::onDateTimerEvent(void *context)
{
    auto *app = static_cast<App *>(context);
    emit app->currentDateChanged();
    app->startDateTimer();
}

void App::startDateTimer()
{
    // To the next minute, anew each time, so that the tick never drifts.
    const int seconds = QTime::currentTime().second();
    SetHardTimerEx("updateDateTimeEvent", &App::onDateTimerEvent, this, (60 - seconds) * 1000);
}

void App::onDeviceEvent(int type, int par1, int /*par2*/)
{
    switch (type) {
    case 25: // a key
        if (par1 == 23)
            emit m_slideshowModel.openCloseMenu();
        else if (par1 == 24)
            m_slideshowModel.prevImage();
        else if (par1 == 25)
            m_slideshowModel.nextImage();
        break;
    case 32: // the device was turned
        changeOrientation(par1);
        break;
    case 40: // a configurable key
        onScanCodeKey(par1);
        break;
    case 151: // to the foreground: the light first, while the show is as it was
        m_settingsModel.onForeground(m_currentView);
        m_slideshowModel.onForeground();
        break;
    case 152: // to the background
        m_settingsModel.onBackground(m_currentView);
        m_slideshowModel.onBackground();
        break;
    case 161: // the card came
    case 162: // and went
    case 163: // USB storage came
    case 164: // and went
        Storage::instance().update();
        break;
    default:
        break;
    }
}

void App::onScanCodeKey(int scanCode)
{
    const auto key = m_keyMap.find(scanCode);
    if (key == m_keyMap.end())
        return;
    const std::string &action = key->second;
    if (action == "@KA_next")
        m_slideshowModel.nextImage();
    else if (action == "@KA_prev")
        m_slideshowModel.prevImage();
    else if (action == "@KA_menu")
        emit m_slideshowModel.openCloseMenu();
}

} // namespace lindenreed::picture_stand
