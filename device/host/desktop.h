// What a running device has on the user's desktop: its window, and pictures opened in the user's own viewer.

#pragma once

#include <QFileSystemWatcher>
#include <QLocalSocket>
#include <QObject>
#include <QProcess>

#include <functional>

namespace lindenreed::host {

/// Joins the desktop once the device answers. Main thread.
class Desktop : public QObject
{
    Q_OBJECT

public:
    /// From what the device calls a file to where the host has it.
    using ToHostPath = std::function<QString(const QString &devicePath)>;

    static bool isThere(); ///< a display that this process may use

    /// `runFolder`: where the device's control socket is, or will be.
    Desktop(const QString &runFolder, ToHostPath toHostPath, QObject *parent = nullptr);
    ~Desktop() override; ///< closes the window

signals:
    void windowClosed(); ///< the device should end, if it does not already

private:
    void joinWhenReady();
    void readEvents();
    void open(const QString &devicePath);
    void windowEnded(int exitCode, QProcess::ExitStatus exitStatus);

    QString m_runFolder;
    ToHostPath m_toHostPath;
    QFileSystemWatcher m_watcher;
    QLocalSocket m_socket;
    QProcess m_window;
    bool m_joined = false;
};

} // namespace lindenreed::host
