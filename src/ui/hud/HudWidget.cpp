#include "ui/hud/HudWidget.h"

#include "platform/programs/Workspace.h"
#include "ui/hud/HudTextFitting.h"
#include "ui/hud/HudTexts.h"

#include <QApplication>
#include <QCursor>
#include <QFontMetricsF>
#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>
#include <QPushButton>
#include <QRegion>
#include <QScreen>
#include <QTextLayout>

#include <algorithm>
#include <cmath>
#include <numeric>
#include <utility>

using namespace Qt::StringLiterals;

namespace tavrin::hud {
namespace {

constexpr QSizeF panelSize(430, 145);
constexpr double panelRadius = 22;
constexpr double distanceFromBottom = 54; // Of the screen's free area.
constexpr double lightWidth = 150;
constexpr double transcriptTop = 3; // Keeps the live text clear of the line above it.
constexpr double transcriptLineHeight = 17.5;
constexpr double indeterminateShare = 0.3; // Of the track, while no end is in sight.

QColor color(double red, double green, double blue, double alpha = 1)
{
    return QColor::fromRgbF(static_cast<float>(red), static_cast<float>(green),
        static_cast<float>(blue), static_cast<float>(alpha));
}

QColor white(double alpha)
{
    return color(1, 1, 1, alpha);
}

QColor dotColor(Dot dot)
{
    switch (dot) {
    case Dot::Recording:
        return color(1.0, 0.28, 0.33);
    case Dot::Processing:
        return color(0, 0.72, 1.0);
    case Dot::Attention:
        break;
    }
    return color(1.0, 0.58, 0.0);
}

/// A frame with its origin at the bottom left of the panel, in the coordinates of a widget.
QRectF frame(double x, double y, double width, double height)
{
    return {x, panelSize.height() - y - height, width, height};
}

QFont systemFont(int pixels, QFont::Weight weight)
{
    QFont result = QApplication::font();
    result.setPixelSize(pixels);
    result.setWeight(weight);
    return result;
}

void drawLine(QPainter& painter, const QRectF& place, const QString& text, Qt::Alignment alignment)
{
    const QString fitting = QFontMetricsF(painter.font(), painter.device())
                                .elidedText(text, Qt::ElideRight, place.width());
    painter.drawText(place, static_cast<int>(alignment) | Qt::TextSingleLine, fitting);
}

/// As drawLine(), in smaller letters where the text would not be whole otherwise.
void drawFitting(
    QPainter& painter, const QRectF& place, const QString& text, Qt::Alignment alignment)
{
    const QFont asked = painter.font();
    const auto inSize = [&](double size) {
        // Fractions of a pixel can be asked for in typographic points only.
        constexpr double pointsPerInch = 72;
        QFont font = asked;
        if (size < asked.pixelSize())
            font.setPointSizeF(size * pointsPerInch / painter.device()->logicalDpiY());
        return font;
    };
    painter.setFont(inSize(fittingSize(asked.pixelSize(), place.width(), [&](double size) {
        return QFontMetricsF(inSize(size), painter.device()).horizontalAdvance(text);
    })));
    drawLine(painter, place, text, alignment);
    painter.setFont(asked);
}

/// @p text in the middle of @p place, every digit as wide as the others.
void drawTime(QPainter& painter, const QRectF& place, const QString& text)
{
    const QFontMetricsF metrics(painter.font(), painter.device());
    const QList<double> widths = tabularWidths(
        text, [&](const QString& character) { return metrics.horizontalAdvance(character); });
    QRectF cell = place;
    cell.translate((place.width() - std::accumulate(widths.begin(), widths.end(), 0.0)) / 2, 0);
    for (qsizetype i = 0; i < text.size(); ++i) {
        cell.setWidth(widths[i]);
        painter.drawText(cell,
            static_cast<int>(Qt::AlignCenter) | Qt::TextSingleLine | Qt::TextDontClip,
            text.mid(i, 1));
        cell.moveLeft(cell.right());
    }
}

/// @p text broken into lines of @p width.
QStringList wrapped(const QString& text, const QFont& font, double width)
{
    QTextLayout layout(text, font);
    QTextOption option;
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    layout.setTextOption(option);
    layout.beginLayout();
    QStringList lines;
    for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
        line.setLineWidth(width);
        lines.append(text.mid(line.textStart(), line.textLength()));
    }
    layout.endLayout();
    return lines;
}

/// The last lines of @p text that fit: what was said last stays visible.
void drawTail(QPainter& painter, const QRectF& place, QString text, int mostLines)
{
    constexpr qsizetype mostCharacters = 400; // More than the place can show.
    bool cut = text.size() > mostCharacters;
    text = text.right(mostCharacters).replace(u'\n', u' ');
    QStringList lines = wrapped(text, painter.font(), place.width());
    if (lines.size() > mostLines) {
        lines = lines.last(mostLines);
        cut = true;
    }
    if (cut && !lines.isEmpty()) {
        lines.first() = QFontMetricsF(painter.font())
                            .elidedText(u"…"_s + lines.first(), Qt::ElideLeft, place.width());
    }
    QRectF line(place.x(), place.y() + transcriptTop, place.width(), transcriptLineHeight);
    for (const QString& words : std::as_const(lines)) {
        // Scripts of a fallback font may be taller than the line.
        painter.drawText(line,
            static_cast<int>(Qt::AlignLeft | Qt::AlignVCenter) | Qt::TextSingleLine
                | Qt::TextDontClip,
            words);
        line.translate(0, transcriptLineHeight);
    }
}

QPainterPath roundedPath(const QRectF& place, double radius)
{
    QPainterPath path;
    path.addRoundedRect(place, radius, radius);
    return path;
}

/// The pixels of a rectangle with round corners. A path's polygon would leave ragged edges.
QRegion roundedRegion(const QRect& place, double radius)
{
    const int rows = static_cast<int>(radius);
    QRegion region(place.adjusted(0, rows, 0, -rows));
    for (int row = 0; row < rows; ++row) {
        const double height = radius - row - 0.5;
        const int inset = qRound(radius - std::sqrt(radius * radius - height * height));
        const int width = place.width() - 2 * inset;
        region += QRect(place.x() + inset, place.y() + row, width, 1);
        region += QRect(place.x() + inset, place.bottom() - row, width, 1);
    }
    return region;
}

/// The light's colours across its width.
QLinearGradient lightGradient(const QRectF& light)
{
    QLinearGradient gradient(light.topLeft(), light.topRight());
    gradient.setColorAt(0, color(0, 0.75, 1, 0));
    gradient.setColorAt(0.24, color(0, 0.78, 1, 0.85));
    gradient.setColorAt(0.5, white(1));
    gradient.setColorAt(0.76, color(0.12, 0.45, 1, 0.8));
    gradient.setColorAt(1, color(0.12, 0.45, 1, 0));
    return gradient;
}

} // namespace

Widget::Widget(const Workspace& workspace)
    : QWidget(nullptr,
        Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint | Qt::WindowDoesNotAcceptFocus
            | Qt::X11BypassWindowManagerHint)
    , m_workspace(workspace)
{
    setAttribute(Qt::WA_TranslucentBackground);
    setAttribute(Qt::WA_ShowWithoutActivating);
    setWindowTitle(u"Tavrin"_s);
    setFixedSize(panelSize.toSize());
}

void Widget::setActions(std::function<void()> confirm, std::function<void()> continueRecording)
{
    m_confirm = std::move(confirm);
    m_continue = std::move(continueRecording);
}

void Widget::setContent(const Content& content)
{
    if (content == m_content)
        return;
    m_content = content;
    setButtonsVisible(content.buttonsVisible);
    // Each of these is an event for whoever listens, even when nothing has changed by it.
    if (accessibleName() != content.titleLabel)
        setAccessibleName(content.titleLabel);
    if (accessibleDescription() != content.detailLabel)
        setAccessibleDescription(content.detailLabel);
    if (windowFlags().testFlag(Qt::WindowTransparentForInput) == content.takesMouse) {
        const bool shown = isVisible();
        setWindowFlag(Qt::WindowTransparentForInput, !content.takesMouse); // Hides the window.
        if (shown)
            show();
    }
    update();
}

void Widget::positionAndShow()
{
    const QScreen* screen =
        QApplication::screenAt(m_workspace.frontmostPoint().value_or(QCursor::pos()));
    if (!screen)
        screen = QApplication::primaryScreen();
    if (screen) {
        const QRect free = screen->availableGeometry();
        move(free.x() + (free.width() - width()) / 2,
            free.y() + free.height() - qRound(distanceFromBottom) - height());
    }
    if (m_workspace.isCompositing())
        clearMask();
    else
        setMask(roundedRegion(rect(), panelRadius));
    show();
    raise();
}

void Widget::orderOut()
{
    QWidget::hide();
}

void Widget::paintEvent(QPaintEvent* /*event*/)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);

    painter.setPen(Qt::NoPen);
    painter.setBrush(color(0.075, 0.065, 0.16, 0.96));
    painter.drawRoundedRect(QRectF(rect()), panelRadius, panelRadius);
    painter.setPen(QPen(white(0.12), 1));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(
        QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), panelRadius - 0.5, panelRadius - 0.5);

    painter.setPen(Qt::NoPen);
    painter.setBrush(dotColor(m_content.dot));
    painter.drawEllipse(frame(20, 111, 10, 10));

    paintTexts(painter);
    if (m_content.barsVisible) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(color(0, 0.76, 1));
        for (int i = 0; i < barCount; ++i) {
            const Bar& bar = m_content.bars.at(static_cast<std::size_t>(i));
            painter.drawRoundedRect(frame(310 + 12.0 * i, bar.y, 4, bar.height), 2.5, 2.5);
        }
    }
    if (!m_content.buttonsVisible)
        paintTrack(painter);
}

void Widget::paintTexts(QPainter& painter) const
{
    painter.setFont(systemFont(17, QFont::DemiBold));
    painter.setPen(white(1));
    drawLine(
        painter, frame(42, 103, 235, 24), m_content.titleLabel, Qt::AlignLeft | Qt::AlignVCenter);

    painter.setFont(systemFont(12, QFont::Normal));
    painter.setPen(white(0.58));
    drawFitting(
        painter, frame(42, 79, 255, 20), m_content.detailLabel, Qt::AlignLeft | Qt::AlignVCenter);

    painter.setFont(systemFont(14, QFont::Medium));
    painter.setPen(white(0.75));
    drawTime(painter, frame(348, 104, 60, 22), m_content.timeLabel);

    painter.setFont(systemFont(13, QFont::Medium));
    painter.setPen(white(0.9));
    drawTail(painter, frame(20, 39, 390, 38), m_content.transcriptLabel, 2);
}

void Widget::paintTrack(QPainter& painter) const
{
    const QRectF track = frame(20, 18, 390, 7);
    painter.save();
    painter.setClipPath(roundedPath(track, 3.5));
    painter.fillRect(track, color(0.04, 0.14, 0.24));
    const QRectF lightLayer(track.x() + m_content.lightX, track.y(), lightWidth, track.height());
    painter.fillRect(lightLayer, lightGradient(lightLayer));
    if (m_content.progressVisible)
        paintProgress(painter, track);
    painter.restore();
}

void Widget::paintProgress(QPainter& painter, const QRectF& track) const
{
    QRectF progressBar = track;
    if (m_content.progressIndeterminate) {
        progressBar.setWidth(track.width() * indeterminateShare);
        progressBar.moveLeft(track.x() + m_content.lightX * 0.75);
        painter.setOpacity(0.5);
    } else {
        progressBar.setWidth(track.width() * m_content.progress / 100);
    }
    painter.setPen(Qt::NoPen);
    painter.setBrush(color(0, 0.72, 1.0));
    painter.drawRoundedRect(progressBar, 3.5, 3.5);
}

void Widget::setButtonsVisible(bool visible)
{
    if (visible && !m_continueButton)
        addButtons();
    for (QPushButton* button : {m_continueButton, m_confirmButton}) {
        if (button)
            button->setVisible(visible);
    }
}

void Widget::addButtons()
{
    m_continueButton = addButton(texts::continueButton.toString(), frame(226, 17, 88, 30));
    m_confirmButton = addButton(texts::confirmCancelButton.toString(), frame(320, 17, 90, 30));
    connect(m_confirmButton, &QPushButton::clicked, this, [this] {
        if (m_confirm)
            m_confirm();
    });
    connect(m_continueButton, &QPushButton::clicked, this, [this] {
        if (m_continue)
            m_continue();
    });
}

QPushButton* Widget::addButton(const QString& title, const QRectF& place)
{
    auto* const button = new QPushButton(title, this);
    button->setGeometry(place.toRect());
    button->setFont(systemFont(13, QFont::Medium));
    button->setFocusPolicy(Qt::NoFocus);
    button->setStyleSheet(
        u"QPushButton { color: white; background: rgba(255, 255, 255, 36); border: 1px solid "
        "rgba(255, 255, 255, 46); border-radius: 7px; }"
        "QPushButton:hover { background: rgba(255, 255, 255, 56); }"
        "QPushButton:pressed { background: rgba(255, 255, 255, 26); }"_s);
    button->hide();
    return button;
}

} // namespace tavrin::hud
