#include "slate_window_sentences.h"

#include <QFont>
#include <QFontMetrics>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace lindenreed::remote {

namespace {

constexpr QRgb tipColour = 0xff111111;
constexpr QRgb tipTextColour = 0xffe4e5e7;
constexpr int paleness = 176; ///< of 255

QFont font(int logicalPixels, double ratio)
{
    QFont font;
    font.setPixelSize(int(std::lround(logicalPixels * ratio)));
    return font;
}

/// As large as the sentence needs, at most `widest`.
QSize sizeOf(const QString &sentence, const QFont &font, int widest)
{
    return QFontMetrics(font).boundingRect(QRect(0, 0, widest, 10'000), Qt::TextWordWrap, sentence).size();
}

} // namespace

void paintTip(QPainter *painter, const WindowLayout &layout, const QString &sentence,
              std::optional<DeviceButton> button, double ratio)
{
    const auto scaled = [ratio](int length) { return int(std::lround(length * ratio)); };
    const QFont textFont = font(14, ratio);
    const int padding = scaled(10);
    const int edge = scaled(6);
    const int right = layout.body().size().width() - edge;
    const QSize text = sizeOf(sentence, textFont, std::max(1, right - 2 * padding - edge));
    const QRect level = layout.strip().buttonRectangle(button.value_or(deviceButtons.front()));
    QRect plate(QPoint(0, 0), text + QSize(2 * padding, 2 * padding));
    plate.moveRight(right);
    plate.moveTop(level.center().y() - plate.height() / 2);

    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setPen(Qt::NoPen);
    painter->setBrush(QColor::fromRgb(tipColour));
    painter->drawRoundedRect(plate, scaled(8), scaled(8));
    painter->setFont(textFont);
    painter->setPen(QColor::fromRgb(tipTextColour));
    painter->drawText(plate.adjusted(padding, padding, -padding, -padding),
                      Qt::TextWordWrap | Qt::AlignVCenter, sentence);
    painter->restore();
}

void paintLost(QPainter *painter, const QRect &panel, const QString &sentence, double ratio)
{
    const auto scaled = [ratio](int length) { return int(std::lround(length * ratio)); };
    const QFont textFont = font(16, ratio);
    const int padding = scaled(20);
    const int widest = std::min(panel.width() - 4 * padding, scaled(360));
    const QSize text = sizeOf(sentence, textFont, std::max(1, widest));
    QRect plate(QPoint(0, 0), text + QSize(2 * padding, 2 * padding));
    plate.moveCenter(panel.center());

    painter->save();
    painter->setClipRect(panel);
    painter->fillRect(panel, QColor(255, 255, 255, paleness));
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setPen(QPen(Qt::black, scaled(2)));
    painter->setBrush(Qt::white);
    painter->drawRoundedRect(plate, scaled(10), scaled(10));
    painter->setFont(textFont);
    painter->drawText(plate, Qt::TextWordWrap | Qt::AlignCenter, sentence);
    painter->restore();
}

} // namespace lindenreed::remote
