#include "ui/controls/Painting.h"

#include <QImage>
#include <QMargins>
#include <QPainter>
#include <QPixmap>
#include <QPixmapCache>
#include <qdrawutil.h>

#include <algorithm>
#include <cmath>
#include <vector>

using namespace Qt::StringLiterals;

namespace tavrin::ui {
namespace {

/// Weights of a Gaussian with this standard deviation, from the middle outwards; their sum over
/// both sides is 1.
std::vector<float> gaussian(double deviation)
{
    constexpr double reach = 3; // Deviations; beyond lies less than a third of a percent.
    std::vector<double> weights;
    double sum = 0;
    for (int i = 0; i <= static_cast<int>(std::ceil(deviation * reach)); ++i) {
        weights.push_back(std::exp(-i * i / (2 * deviation * deviation)));
        sum += i == 0 ? weights.back() : 2 * weights.back();
    }
    std::vector<float> result(weights.size());
    std::ranges::transform(
        weights, result.begin(), [sum](double weight) { return static_cast<float>(weight / sum); });
    return result;
}

/// Opacities from 0 to 255, row by row.
struct Mask {
    std::size_t width = 0;
    std::size_t height = 0;
    std::vector<float> opacities;
};

/// Blurs along the rows, and exchanges rows and columns.
Mask blurredAndTurned(const Mask& source, const std::vector<float>& weights)
{
    const std::size_t reach = weights.size() - 1;
    Mask result{source.height, source.width, std::vector<float>(source.opacities.size())};
    std::vector<float> row(source.width + 2 * reach); // Nothing on either side.
    for (std::size_t y = 0; y < source.height; ++y) {
        std::copy_n(source.opacities.data() + y * source.width, source.width, row.data() + reach);
        for (std::size_t x = 0; x < source.width; ++x) {
            const float* const place = row.data() + reach + x;
            float sum = *place * weights[0];
            for (std::size_t i = 1; i <= reach; ++i)
                sum += (*(place - i) + place[i]) * weights[i];
            result.opacities[x * source.height + y] = sum;
        }
    }
    return result;
}

Mask maskOf(const QImage& image)
{
    Mask mask{
        static_cast<std::size_t>(image.width()), static_cast<std::size_t>(image.height()), {}};
    for (int y = 0; y < image.height(); ++y) {
        const uchar* const row = image.constScanLine(y);
        mask.opacities.insert(mask.opacities.end(), row, row + image.width());
    }
    return mask;
}

QImage imageOf(const Mask& mask)
{
    QImage image(
        static_cast<int>(mask.width), static_cast<int>(mask.height), QImage::Format_Alpha8);
    auto opacity = mask.opacities.begin();
    for (int y = 0; y < image.height(); ++y) {
        std::transform(opacity, opacity + image.width(), image.scanLine(y),
            [](float value) { return static_cast<uchar>(std::lround(value)); });
        opacity += image.width();
    }
    return image;
}

constexpr int middle = 2; // Points between the corners of a shadow's picture, to be stretched.

/// How far a shadow is seen outside of its box, in points.
int extent(const Shadow& shadow)
{
    return 2 * shadow.blur;
}

/// The shadow of a box of this radius, twice @p half wide and a little wider.
QPixmap shadowPicture(int radius, int half, const Shadow& shadow, double ratio)
{
    const QString key = u"shadow/%1/%2/%3/%4/%5"_s.arg(shadow.color.name(QColor::HexArgb))
                            .arg(shadow.blur)
                            .arg(radius)
                            .arg(half)
                            .arg(ratio);
    QPixmap pixmap;
    if (QPixmapCache::find(key, &pixmap))
        return pixmap;
    const int outside = extent(shadow);
    const int side = 2 * (outside + half) + middle;
    const int pixels = static_cast<int>(std::lround(side * ratio));
    QImage mask(pixels, pixels, QImage::Format_Alpha8);
    mask.fill(0);
    QPainter painter(&mask);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(ratio, ratio);
    painter.setPen(Qt::NoPen);
    painter.setBrush(Qt::black);
    painter.drawRoundedRect(
        QRectF(outside, outside, side - 2 * outside, side - 2 * outside), radius, radius);
    painter.end();
    const std::vector<float> weights = gaussian(shadow.blur * ratio);
    mask = imageOf(blurredAndTurned(blurredAndTurned(maskOf(mask), weights), weights));
    QImage image(mask.size(), QImage::Format_ARGB32_Premultiplied);
    image.fill(shadow.color);
    painter.begin(&image);
    painter.setCompositionMode(QPainter::CompositionMode_DestinationIn);
    painter.drawImage(0, 0, mask);
    painter.end();
    pixmap = QPixmap::fromImage(image);
    QPixmapCache::insert(key, pixmap);
    return pixmap;
}

} // namespace

void drawBox(QPainter& painter, const QRectF& frame, const Box& box)
{
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(box.fill.isValid() ? QBrush(box.fill) : QBrush(Qt::NoBrush));
    const double inset = box.border.isValid() ? box.borderWidth / 2 : 0;
    painter.setPen(box.border.isValid() ? QPen(box.border, box.borderWidth) : QPen(Qt::NoPen));
    painter.drawRoundedRect(
        frame.adjusted(inset, inset, -inset, -inset), box.radius - inset, box.radius - inset);
    painter.restore();
}

Shadow cardShadow()
{
    return {QColor::fromRgbF(0.2F, 0.17F, 0.1F, 0.1F), 12, 2};
}

Shadow selectionShadow()
{
    return {QColor::fromRgbF(0.22F, 0.18F, 0.1F, 0.08F), 6, 1};
}

void drawShadow(QPainter& painter, const QRect& frame, int radius, const Shadow& shadow)
{
    const double ratio = painter.device()->devicePixelRatio();
    const int outside = extent(shadow);
    const int half =
        std::min(std::max(radius, outside), std::min(frame.width(), frame.height()) / 2);
    // Two points wider than its corners: what has no middle has none to be stretched.
    const QPixmap picture = shadowPicture(radius, half + 1, shadow, ratio);
    const QRect target =
        frame.adjusted(-outside, -outside, outside, outside).translated(0, shadow.down);
    const int corner = outside + half;
    const auto pixels = static_cast<int>(std::lround(corner * ratio));
    painter.save();
    // What the box covers, but for its corners, is most of the picture.
    painter.setClipRegion(
        QRegion(target).subtracted(frame.adjusted(radius, radius, -radius, -radius)),
        Qt::IntersectClip);
    qDrawBorderPixmap(&painter, target, QMargins(corner, corner, corner, corner), picture,
        picture.rect(), QMargins(pixels, pixels, pixels, pixels),
        QTileRules(Qt::StretchTile, Qt::StretchTile));
    painter.restore();
}

} // namespace tavrin::ui
