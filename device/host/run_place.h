// The folder in memory where a running device has its control socket and its panel.

#pragma once

#include <QString>

#include <memory>

namespace lindenreed::host {

/// Made fresh, mode 0700, and removed at the end of its life. What an earlier start left is taken away.
class RunPlace
{
public:
    /// `deviceRoot`: its real path, held by this process. Null, with one sentence in `error`, where it cannot
    /// be made.
    static std::unique_ptr<RunPlace> make(const QString &deviceRoot, QString *error);

    /// The same for a machine that is the device itself: the device's own folder, found at the usual place as
    /// well.
    static std::unique_ptr<RunPlace> makeForMachine(QString *error);

    ~RunPlace();
    RunPlace(const RunPlace &) = delete;
    RunPlace &operator=(const RunPlace &) = delete;

    const QString &path() const { return m_path; }

private:
    RunPlace() = default;
    QString m_path;
};

} // namespace lindenreed::host
