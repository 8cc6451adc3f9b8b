// A light of the machine, as the kernel shows it.

#pragma once

#include <QObject>
#include <QString>

#include <memory>

namespace lindenreed::device {

class MessageBus;

/// One folder of /sys/class/backlight. It is read directly, and written so where that is allowed; else
/// through logind, which gives the light to whoever is logged in and does not make anybody wait. Main thread.
class Backlight : public QObject
{
    Q_OBJECT

public:
    /// Nothing, with a reason in `error`, where the folder cannot be read or holds absurd values.
    static std::unique_ptr<Backlight> open(const QString &folder, QString *error);
    ~Backlight() override;

    int level() const { return m_level; } ///< 0 to 100, as it was when it was opened, or set since
    void setLevel(int level); ///< 0 to 100; every level above 0 gives light

private:
    Backlight();
    bool write(uint value) const;
    void ask(uint value);
    void complain(const QString &reason);
    void forgetBus();

    QString m_folder;
    uint m_most = 0;
    int m_level = 0;
    bool m_complained = false;
    std::unique_ptr<MessageBus> m_bus;
};

} // namespace lindenreed::device
