#include "status_drawing.h"

#include <QFont>
#include <QFontMetrics>
#include <QPainter>
#include <QPainterPath>

#include <array>
#include <cmath>

namespace lindenreed::device {

using namespace Qt::StringLiterals;

namespace {

// Pixels of a 300 dpi panel.
constexpr int sideMargin = 60;
constexpr int textHeight = 36;
constexpr int signSize = 40;
constexpr int signGap = 20;
constexpr int batteryWidth = 52;
constexpr int batteryHeight = 28;

// Signs are drawn on a grid of 24 units, with a line of 2.4.
constexpr qreal grid = 24;
constexpr qreal lineUnits = 2.4;

using DrawSign = void (*)(QPainter &painter);

void drawCard(QPainter &painter)
{
    QPainterPath outline;
    outline.moveTo(10, 3);
    outline.lineTo(18, 3);
    outline.lineTo(18, 21);
    outline.lineTo(6, 21);
    outline.lineTo(6, 7);
    outline.closeSubpath();
    painter.drawPath(outline);
    painter.drawLine(QPointF(10.5, 7), QPointF(10.5, 9.5));
    painter.drawLine(QPointF(14, 7), QPointF(14, 9.5));
}

void drawUsb(QPainter &painter)
{
    QPainterPath stick;
    stick.addRoundedRect(QRectF(6, 9, 12, 12), 2, 2);
    stick.addRect(QRectF(9, 3, 6, 6));
    painter.drawPath(stick);
}

void drawLight(QPainter &painter)
{
    painter.drawEllipse(QPointF(12, 12), 3.6, 3.6);
    for (int ray = 0; ray < 8; ++ray) {
        painter.save();
        painter.translate(12, 12);
        painter.rotate(45.0 * ray);
        painter.drawLine(QPointF(0, -7), QPointF(0, -9));
        painter.restore();
    }
}

/// Puts things from the right edge to the left, on whole pixels.
class RightToLeft
{
public:
    RightToLeft(QPainter &painter, const QSize &size, int dpi)
        : m_painter(painter)
        , m_size(size)
        , m_dpi(dpi)
        , m_right(size.width() - pixels(sideMargin))
    {
    }

    void text(const QString &text)
    {
        const int width = m_painter.fontMetrics().horizontalAdvance(text);
        m_painter.setPen(Qt::black);
        m_painter.drawText(take(width, m_size.height()), Qt::AlignCenter, text);
    }

    void battery(int percent)
    {
        const QRect place = take(pixels(batteryWidth), pixels(batteryHeight));
        const int line = std::max(2, pixels(4));
        const int knob = std::max(2, pixels(5));
        const QRect body = place.adjusted(0, 0, -knob, 0);
        m_painter.fillRect(body, Qt::black);
        m_painter.fillRect(body.adjusted(line, line, -line, -line), Qt::white);
        const QRect inner = body.adjusted(2 * line, 2 * line, -2 * line, -2 * line);
        const int fifths = (qBound(0, percent, 100) + 19) / 20;
        m_painter.fillRect(QRect(inner.topLeft(), QSize(inner.width() * fifths / 5, inner.height())),
                           Qt::black);
        const int knobHeight = body.height() / 2 / 2 * 2;
        m_painter.fillRect(
            QRect(body.right() + 1, body.top() + (body.height() - knobHeight) / 2, knob, knobHeight),
            Qt::black);
    }

    void sign(DrawSign draw)
    {
        const int side = pixels(signSize);
        const QRect place = take(side, side);
        m_painter.save();
        m_painter.translate(place.topLeft());
        m_painter.scale(side / grid, side / grid);
        m_painter.setPen(QPen(Qt::black, lineUnits, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        m_painter.setBrush(Qt::NoBrush);
        draw(m_painter);
        m_painter.restore();
    }

    void gap(int designPixels) { m_right -= pixels(designPixels); }

private:
    int pixels(int design) const { return int(std::lround(design * m_dpi / 300.0)); }

    QRect take(int width, int height)
    {
        m_right -= width;
        return QRect(m_right, (m_size.height() - height) / 2, width, height);
    }

    QPainter &m_painter;
    QSize m_size;
    int m_dpi;
    int m_right;
};

} // namespace

QString batteryText(int percent)
{
    return u"%1\u00a0%"_s.arg(qBound(0, percent, 100));
}

QImage drawStatusPanel(const QSize &size, int dpi, QImage::Format format, const StatusValues &values)
{
    QImage picture(size, format);
    if (picture.isNull()) // a panel without a status bar
        return picture;
    picture.fill(Qt::white);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);

    QFont font(u"Noto Sans"_s);
    font.setPixelSize(int(std::lround(textHeight * dpi / 300.0)));
    font.setHintingPreference(QFont::PreferNoHinting);
    font.setBold(true);
    painter.setFont(font);
    painter.setPen(Qt::black);
    const int margin = int(std::lround(sideMargin * dpi / 300.0));
    painter.drawText(picture.rect().adjusted(margin, 0, -margin, 0), Qt::AlignLeft | Qt::AlignVCenter,
                     values.clock);

    font.setBold(false);
    painter.setFont(font);
    RightToLeft row(painter, size, dpi);
    if (values.battery) {
        row.text(batteryText(*values.battery));
        row.gap(signGap / 2); // the number belongs to its battery
        row.battery(*values.battery);
        row.gap(signGap);
    }
    const std::array<std::pair<bool, DrawSign>, 3> signs{
        {{values.light, drawLight}, {values.usb, drawUsb}, {values.card, drawCard}}};
    for (const auto &[shown, draw] : signs) {
        if (!shown)
            continue;
        row.sign(draw);
        row.gap(signGap);
    }
    return picture;
}

} // namespace lindenreed::device
