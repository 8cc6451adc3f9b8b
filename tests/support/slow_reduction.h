// Pictures that are made smaller with Lanczos' window in floating point, for comparison.

#pragma once

#include <QImage>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <numbers>
#include <vector>

inline double lanczos(double x)
{
    const auto sinc
        = [](double t) { return t == 0 ? 1 : std::sin(std::numbers::pi * t) / (std::numbers::pi * t); };
    return std::abs(x) < 3 ? sinc(x) * sinc(x / 3) : 0;
}

/// Every line of `source`, of `length` values each, as a column of the result: the picture is also turned
/// over its diagonal.
inline std::vector<double> reducedAndTransposed(const std::vector<double> &source, int length,
                                                int targetLength)
{
    const double scale = double(length) / targetLength;
    const auto step = std::size_t(length);
    const std::size_t lines = source.size() / step;
    std::vector<double> target(std::size_t(targetLength) * lines);
    for (int i = 0; i < targetLength; ++i) {
        const double centre = (i + 0.5) * scale - 0.5;
        std::size_t first = step;
        double sum = 0;
        std::vector<double> weights;
        for (int k = 0; k < length; ++k) {
            if (std::abs(k - centre) >= 3 * scale)
                continue;
            if (weights.empty())
                first = std::size_t(k);
            weights.push_back(lanczos((k - centre) / scale));
            sum += weights.back();
        }
        for (std::size_t line = 0; line < lines; ++line) {
            const double *const values = source.data() + line * step + first;
            double value = 0;
            for (std::size_t k = 0; k < weights.size(); ++k)
                value += weights[k] * values[k];
            target[std::size_t(i) * lines + line] = value / sum;
        }
    }
    return target;
}

/// One channel, row by row; the reduced one may reach beyond black and white.
inline std::vector<double> slowlyReduced(const std::vector<std::uint8_t> &picture, int width, int targetWidth,
                                         int targetHeight)
{
    const auto height = int(picture.size() / std::size_t(width));
    return reducedAndTransposed(reducedAndTransposed({picture.begin(), picture.end()}, width, targetWidth),
                                height, targetHeight);
}

/// How far a picture is from what it should be.
struct ReductionError
{
    double most = 0; ///< of a channel of a pixel, in 8 bits
    double peakSignalToNoise = 0; ///< in dB
};

/// Of a picture that was made from `whole`.
inline ReductionError reductionError(QImage picture, QImage whole)
{
    picture.convertTo(QImage::Format_RGB32);
    whole.convertTo(QImage::Format_RGB32);
    const auto channel = [](const QImage &image, int shift) {
        const auto *const pixels = static_cast<const QRgb *>(static_cast<const void *>(image.constBits()));
        std::vector<std::uint8_t> values(std::size_t(image.width()) * std::size_t(image.height()));
        for (std::size_t i = 0; i < values.size(); ++i)
            values[i] = std::uint8_t(pixels[i] >> shift);
        return values;
    };
    double most = 0;
    double sum = 0;
    for (const int shift : {0, 8, 16}) {
        const std::vector<std::uint8_t> values = channel(picture, shift);
        const std::vector<double> expected
            = slowlyReduced(channel(whole, shift), whole.width(), picture.width(), picture.height());
        for (std::size_t i = 0; i < values.size(); ++i) {
            const double off = std::abs(values[i] - std::clamp(expected[i], 0.0, 255.0));
            most = std::max(most, off);
            sum += off * off;
        }
    }
    return {most, 10 * std::log10(255.0 * 255 * 3 * picture.width() * picture.height() / sum)};
}
