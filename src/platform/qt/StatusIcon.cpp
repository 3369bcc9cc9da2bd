#include "platform/qt/StatusIcon.h"

#include <QGuiApplication>
#include <QIconEngine>
#include <QPainter>

#include <algorithm>

namespace tavrin {
namespace {

const QColor ground = QColor::fromRgbF(0.29F, 0.19F, 0.72F);

/// The largest bold font in which the ink of @p text fits into @p room.
QFont fittingFont(const QString& text, const QSizeF& room)
{
    QFont font = QGuiApplication::font();
    font.setBold(true);
    for (int pixels = std::max(static_cast<int>(room.height() * 1.6), 1); pixels > 1; --pixels) {
        font.setPixelSize(pixels);
        const QRectF ink = QFontMetricsF(font).tightBoundingRect(text);
        if (ink.width() <= room.width() && ink.height() <= room.height())
            break;
    }
    return font;
}

class StatusIconEngine final : public QIconEngine {
public:
    explicit StatusIconEngine(QString text)
        : m_text(std::move(text))
    {
    }

    void paint(
        QPainter* painter, const QRect& rect, QIcon::Mode /*mode*/, QIcon::State /*state*/) override
    {
        const int side = std::min(rect.width(), rect.height());
        QRectF frame(0, 0, side, side);
        frame.moveCenter(QRectF(rect).center());
        const double inset = std::max(1.0, std::round(side / 22.0));
        frame.adjust(inset, inset, -inset, -inset);
        painter->setRenderHint(QPainter::Antialiasing);
        painter->setPen(Qt::NoPen);
        painter->setBrush(ground);
        const double radius = side * 0.2;
        painter->drawRoundedRect(frame, radius, radius);
        paintText(*painter, frame);
    }

    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override
    {
        QPixmap pixmap(size);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        paint(&painter, QRect(QPoint(), size), mode, state);
        return pixmap;
    }

    QList<QSize> availableSizes(QIcon::Mode /*mode*/, QIcon::State /*state*/) override
    {
        QList<QSize> sizes;
        for (const int side : {16, 22, 24, 32, 48, 64})
            sizes.append(QSize(side, side));
        return sizes;
    }

    [[nodiscard]] QIconEngine* clone() const override { return new StatusIconEngine(*this); }

private:
    void paintText(QPainter& painter, const QRectF& frame) const
    {
        // Letters may come closer to the sides than to top and bottom.
        const double beside = frame.width() * 0.06;
        const double above = frame.height() * 0.12;
        const QRectF room = frame.adjusted(beside, above, -beside, -above);
        painter.setBrush(Qt::white);
        if (m_text == u"●") {
            const double radius = frame.width() * 0.26;
            painter.drawEllipse(frame.center(), radius, radius);
            return;
        }
        const QFont font = fittingFont(m_text, room.size());
        QRectF ink = QFontMetricsF(font).tightBoundingRect(m_text);
        const QPointF origin = -ink.topLeft();
        ink.moveCenter(room.center());
        painter.setFont(font);
        painter.setPen(Qt::white);
        painter.drawText((ink.topLeft() + origin).toPoint(), m_text);
    }

    QString m_text;
};

} // namespace

QIcon statusIcon(const QString& text)
{
    return QIcon(new StatusIconEngine(text));
}

} // namespace tavrin
