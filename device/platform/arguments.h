// The members of a request, checked strictly.

#pragma once

#include <control_server.h>

#include <QJsonObject>
#include <QString>
#include <QStringList>

#include <optional>

namespace lindenreed::device {

/// Reads the members of one request. The first that is missing or wrong is remembered; ask refuse() before
/// the values are used.
class Arguments
{
public:
    explicit Arguments(const QJsonObject &request)
        : m_request(request)
    {
    }

    bool has(const QString &name) const { return m_request.contains(name); }
    int integer(const QString &name, int least, int most);
    int integerOr(const QString &name, int least, int most, int fallback);
    bool boolean(const QString &name);
    std::optional<int> optionalInteger(const QString &name, int least, int most);
    std::optional<bool> optionalBoolean(const QString &name);
    QString text(const QString &name); ///< not empty
    QString word(const QString &name, const QStringList &words); ///< one of `words`
    void complain(const QString &sentence); ///< about what the types cannot tell

    /// Answers "bad-argument" where something was wrong; true: it has answered.
    bool refuse(const remote::Reply &reply) const;

private:
    QJsonObject m_request;
    QString m_complaint;
};

} // namespace lindenreed::device
