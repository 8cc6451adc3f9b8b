// The application: owns everything that lives for the whole run, and wires it together.

#pragma once

#include "breadcrumbs_model.h"
#include "cover_provider.h"
#include "folder_model.h"
#include "font_model.h"
#include "key_map.h"
#include "playlist_model.h"
#include "resource_image_provider.h"
#include "settings_model.h"
#include "slideshow_model.h"

#include <QDateTime>
#include <QObject>

class QGuiApplication;

namespace lindenreed::picture_stand {

/**
 * The device as the interface sees it: usable screen, views, panel, orientation, and the way out.
 *
 * One at a time; lives on the main thread, on which the device delivers its events and timers.
 */
class App : public QObject
{
    Q_OBJECT
    Q_PROPERTY(int screenWidth READ screenWidth NOTIFY screenChanged)
    Q_PROPERTY(int screenHeight READ screenHeight NOTIFY screenChanged)
    Q_PROPERTY(QDateTime currentDate READ currentDate NOTIFY currentDateChanged)
    Q_PROPERTY(QString backView READ backView WRITE setBackView NOTIFY backViewChanged)
    Q_PROPERTY(QString currentView READ currentView WRITE changeView NOTIFY changedView)
    Q_PROPERTY(QString prevView READ prevView)

public:
    explicit App(QObject *parent = nullptr);

    /// Everything from the device's events to the end of the event loop; the process's exit code, -1 when the
    /// interface cannot be loaded. `application` is not used.
    int run(QGuiApplication *application);

    int screenWidth() const;
    int screenHeight() const; ///< without the status panel while that is shown
    QDateTime currentDate() const { return QDateTime::currentDateTime(); }
    /// Where the slideshow settings return to; set by whoever opens them.
    QString backView() const { return m_backView; }
    void setBackView(const QString &view);
    QString currentView() const { return m_currentView; } ///< empty until the first change
    QString prevView() const { return m_prevView; }

signals:
    void screenChanged();
    void currentDateChanged();
    void orientationChanged(); ///< 100 ms after a turn
    void changedView(QString view);
    void backViewChanged();
    /// A message to the user for a few seconds; `icon` is an image URL.
    void showInfoMessage(QString message, QString icon);

public slots:
    void showPanel(bool show);
    /// Turns the screen. Outside the slideshow only upright ones are accepted.
    void changeOrientation(int n);
    /// A full refresh at the next drawing, on a colour panel.
    void updateScreen();
    void quit();
    void changeView(QString view);

private:
    static void onDateTimerEvent(void *context);
    void startDateTimer();
    void onDeviceEvent(int type, int par1, int par2);
    void onScanCodeKey(int scanCode);
    void connectFolders();
    void connectModels();

    FontModel m_fontModel;
    SettingsModel m_settingsModel;
    SlideshowModel m_slideshowModel;
    FolderModel m_folderModel;
    ResourceImageProvider m_imageProvider;
    CoverProvider m_coverProvider;
    BreadcrumbsModel m_breadcrumbsModel;
    PlaylistModel m_playlistModel;
    const KeyMap m_keyMap; ///< behind the models: they read the configuration as well, and come first
    QString m_backView;
    QString m_currentView;
    QString m_prevView;
};

} // namespace lindenreed::picture_stand
