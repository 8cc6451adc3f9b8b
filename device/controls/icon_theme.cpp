#include "icon_theme.h"

#include "measures.h"

#include <log.h>
#include <paths.h>

#include <QFile>
#include <QPainter>
#include <QSvgRenderer>

#include <algorithm>

namespace lindenreed::device {

using namespace Qt::StringLiterals;

namespace {

constexpr auto inverseSuffix = "_inv"_L1;
constexpr double iconUnits = 24; // icons are drawn on a square of so many units
constexpr double inverseRadius = 3; // units
constexpr QSize usualSize(72, 72); // of an icon, in design pixels

struct IconName
{
    QString base;
    bool inverted;
};

IconName resolve(QString name, bool inverted)
{
    // An older name for an inverse, which screens still use.
    if (name == "desktop_app_settings_f"_L1)
        return {u"desktop_app_settings"_s, !inverted};
    if (name.endsWith(inverseSuffix)) {
        name.chop(inverseSuffix.size());
        return {name, !inverted};
    }
    return {name, inverted};
}

/// Empty where the theme has no such file. Only plain names: an id is never a path out of the theme.
QString iconFile(const QString &name)
{
    const bool plain = std::all_of(name.begin(), name.end(), [](QChar c) {
        return (c >= u'a' && c <= u'z') || (c >= u'0' && c <= u'9') || c == u'_';
    });
    const QString path = dataFolder() + "/theme/icons/"_L1 + name + ".svg"_L1;
    return plain && !name.isEmpty() && QFile::exists(path) ? path : QString();
}

QSize completed(QSize size, QSize natural)
{
    if (size.width() > 0 && size.height() > 0)
        return size;
    if (size.width() > 0)
        return {size.width(), qRound(double(size.width()) * natural.height() / natural.width())};
    if (size.height() > 0)
        return {qRound(double(size.height()) * natural.width() / natural.height()), size.height()};
    return natural;
}

void turnRound(QImage &image)
{
    image.invertPixels(QImage::InvertRgb);
    const double unit = std::max(image.width(), image.height()) / iconUnits;
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setCompositionMode(QPainter::CompositionMode_DestinationOver);
    painter.setPen(Qt::NoPen);
    painter.setBrush(Qt::black);
    painter.drawRoundedRect(image.rect(), inverseRadius * unit, inverseRadius * unit);
}

QImage blank(QSize size)
{
    QImage image(size, QImage::Format_ARGB32);
    image.fill(Qt::transparent);
    return image;
}

/// A crossed box, where the theme has nothing to show.
QImage drawMark(QSize size)
{
    QImage image = blank(size);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(image.width() / iconUnits, image.height() / iconUnits);
    painter.setPen(QPen(Qt::black, 2, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    const QRectF box(4, 4, 16, 16);
    painter.drawRect(box);
    painter.drawLine(box.topLeft(), box.bottomRight());
    painter.drawLine(box.topRight(), box.bottomLeft());
    return image;
}

QSize onThisPanel(QSize design)
{
    return {std::max(measures::pixelsFromDesign(design.width()), 1),
            std::max(measures::pixelsFromDesign(design.height()), 1)};
}

} // namespace

Icon drawIcon(const QString &name, bool inverted, QSize size)
{
    const IconName wanted = resolve(name, inverted);
    // Icons for a dark ground have an inverse of their own: a computed one would not be seen there.
    const QString drawnInverse = wanted.inverted ? iconFile(wanted.base + inverseSuffix) : QString();
    const QString file = drawnInverse.isEmpty() ? iconFile(wanted.base) : drawnInverse;
    QSvgRenderer renderer;
    QImage image;
    QSize natural = onThisPanel(usualSize);
    if (!file.isEmpty() && renderer.load(file)) {
        natural = onThisPanel(renderer.defaultSize());
        image = blank(completed(size, natural));
        renderer.setAspectRatioMode(Qt::KeepAspectRatio);
        QPainter painter(&image);
        painter.setRenderHint(QPainter::Antialiasing);
        renderer.render(&painter);
    } else {
        log::line(2, __FILE__, __LINE__, __func__, "no icon \"" + name.toStdString() + '"');
        image = drawMark(completed(size, natural));
    }
    if (wanted.inverted && drawnInverse.isEmpty())
        turnRound(image);
    return {image.convertToFormat(QImage::Format_ARGB32_Premultiplied), natural};
}

IconProvider::IconProvider(bool inverted)
    : QQuickImageProvider(QQuickImageProvider::Image)
    , m_inverted(inverted)
{
}

QImage IconProvider::requestImage(const QString &id, QSize *size, const QSize &requestedSize)
{
    const Icon icon = drawIcon(id, m_inverted, requestedSize);
    if (size)
        *size = icon.naturalSize;
    return icon.image;
}

} // namespace lindenreed::device
