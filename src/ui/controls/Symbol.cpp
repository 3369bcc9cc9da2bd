#include "ui/controls/Symbol.h"

#include "ui/controls/Placing.h"

#include <QImageReader>
#include <QPainter>
#include <QPixmap>
#include <QPixmapCache>

#include <cmath>
#include <utility>

using namespace Qt::StringLiterals;

namespace tavrin::ui {
namespace {

/// The drawing in one colour, for screens of one or of two pixels a point.
QPixmap tinted(const QString& name, const QColor& color, int scale)
{
    const QString key = u"symbol/%1/%2/%3"_s.arg(name, color.name(QColor::HexArgb)).arg(scale);
    QPixmap pixmap;
    if (QPixmapCache::find(key, &pixmap))
        return pixmap;
    // Asks no plugin, as the program's icon does not.
    QImageReader reader(u":/Symbols/%1%2.png"_s.arg(name, scale > 1 ? u"@2x"_s : QString()), "png");
    reader.setAutoDetectImageFormat(false);
    QImage image = reader.read().convertToFormat(QImage::Format_ARGB32_Premultiplied);
    if (image.isNull())
        return pixmap;
    QPainter painter(&image);
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(image.rect(), color);
    painter.end();
    pixmap = QPixmap::fromImage(image);
    pixmap.setDevicePixelRatio(scale);
    QPixmapCache::insert(key, pixmap);
    return pixmap;
}

} // namespace

void drawSymbol(QPainter& painter, const QString& name, const QRectF& place, const QColor& color)
{
    const int scale = painter.device()->devicePixelRatio() > 1 ? 2 : 1;
    const QPixmap pixmap = tinted(name, color, scale);
    const QSizeF size = pixmap.deviceIndependentSize();
    const QPointF topLeft = place.center() - QPointF(size.width() / 2, size.height() / 2);
    painter.drawPixmap(QPointF(std::round(topLeft.x()), std::round(topLeft.y())), pixmap);
}

Symbol::Symbol(QWidget& parent, const QRect& frame, QString name, const QColor& color)
    : QWidget(&parent)
    , m_name(std::move(name))
    , m_color(color)
{
    place(*this, frame);
    setAttribute(Qt::WA_TransparentForMouseEvents);
}

void Symbol::paintEvent(QPaintEvent* /*event*/)
{
    QPainter painter(this);
    drawSymbol(painter, m_name, rect(), m_color);
}

} // namespace tavrin::ui
