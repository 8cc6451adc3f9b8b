// A device for tests: fresh, without a panel of its own, with everything that a test may want to set.

#pragma once

#include <font_record.h>
#include <journal.h>

#include <QByteArrayList>
#include <QList>
#include <QString>

#include <optional>
#include <utility>

namespace lindenreed::device {

/// A fresh device for one test. Starts one without a panel, or resets the one that the plug-in started; its
/// profile must then be the one asked for, else the process fails at once with a message. Its end clears
/// timers, handler and journal; make it before the objects under test. Main thread.
class DeviceForTest
{
public:
    explicit DeviceForTest(const QString &profile = QStringLiteral("grey-6"));
    ~DeviceForTest();
    DeviceForTest(const DeviceForTest &) = delete;
    DeviceForTest &operator=(const DeviceForTest &) = delete;

    /// The main thread's calls, oldest first; with names, only those.
    QList<SdkCall> calls(const QByteArrayList &names = {}) const;
    void forgetCalls();
    void send(int type, int par1 = 0, int par2 = 0); ///< a device event, delivered before it returns
    bool fire(const QByteArray &timer); ///< lets a hard timer run out and waits until its callback has run;
                                        ///< false: none pending
    void setFonts(const QList<FontRecord> &fonts); ///< what EnumFontsEx() returns
    void setColourMask(int mask);
    void setLocalization(int type, int partner);
    /// What the mount tests say, without an event; its end puts back what was so before.
    void setMounted(bool card, bool usb);
    void setPreviousOrientation(std::optional<int> orientation);

private:
    bool m_started = false;
    std::optional<std::pair<bool, bool>> m_mounted; ///< card and USB as they are
};

} // namespace lindenreed::device
