#include "font_styles.h"

#include "measures.h"

#include <QFont>
#include <QFontMetricsF>

#include <array>
#include <cmath>

namespace lindenreed::device {

namespace {

struct Measure
{
    double size; ///< dp
    double lineHeight; ///< dp
    bool bold;
};

constexpr std::array<Measure, 10> table = {{
    {22.4, 30.4, false}, // Unstyled: the font's own line
    {14.93, 18.13, true}, // TextInIcons1
    {22.4, 28.8, false}, // BodyS
    {22.4, 28.8, true}, // BodySBold
    {26.67, 34.13, false}, // BodyL
    {26.67, 34.13, true}, // BodyLBold
    {26.67, 34.13, true}, // BodyBold
    {25.6, 33.07, true}, // Heading5
    {30.93, 39.47, false}, // Heading4
    {30.93, 39.47, true}, // Heading3
}};

const Measure &measure(int style)
{
    return style >= 0 && style < int(table.size()) ? table[std::size_t(style)] : table.front();
}

} // namespace

int FontStyles::pixelSize(int style) const
{
    return measures::dp(measure(style).size);
}

bool FontStyles::isBold(int style) const
{
    return measure(style).bold;
}

int FontStyles::lineHeight(int style) const
{
    return measures::dp(measure(style).lineHeight);
}

int FontStyles::leading(int style) const
{
    QFont font(family());
    font.setPixelSize(pixelSize(style));
    font.setBold(isBold(style));
    font.setHintingPreference(QFont::PreferNoHinting);
    const QFontMetricsF metrics(font);
    return lineHeight(style) - int(std::ceil(metrics.ascent()) + std::ceil(metrics.descent()));
}

} // namespace lindenreed::device
