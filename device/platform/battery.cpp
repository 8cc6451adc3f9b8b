#include "battery.h"

#include <QDir>
#include <QFile>

namespace lindenreed::device {

using namespace Qt::StringLiterals;

namespace {

QByteArray readValue(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.read(64).trimmed() : QByteArray();
}

} // namespace

std::optional<int> batteryCharge(const QString &folder)
{
    const QStringList supplies = QDir(folder).entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name);
    for (const QString &supply : supplies) {
        const QString path = folder + u'/' + supply + u'/';
        if (readValue(path + u"type"_s) != "Battery" || readValue(path + u"scope"_s) == "Device")
            continue;
        bool isNumber = false;
        const int percent = readValue(path + u"capacity"_s).toInt(&isNumber);
        if (isNumber)
            return qBound(0, percent, 100);
    }
    return std::nullopt;
}

} // namespace lindenreed::device
