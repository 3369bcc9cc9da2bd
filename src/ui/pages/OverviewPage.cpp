#include "ui/pages/OverviewPage.h"

#include "app/pages/OverviewController.h"
#include "app/pages/OverviewTexts.h"
#include "app/settings/Localization.h"
#include "ui/controls/Card.h"
#include "ui/controls/Label.h"
#include "ui/controls/Placing.h"
#include "ui/controls/Symbol.h"
#include "ui/style/BrandStyle.h"

#include <QFontMetricsF>

#include <array>
#include <cmath>

using namespace Qt::StringLiterals;

namespace tavrin::ui {
namespace {

constexpr QSize periodSize(170, 114);
constexpr int periodY = 414;
constexpr std::array periodX{36, 220, 404};
constexpr QRect periodCaption(20, 78, 134, 18);
constexpr QRect periodNumber(20, 40, 138, 36);
constexpr QRect periodUnit(20, 20, 134, 18);

constexpr std::array totalFrames{QRect(36, 312, 262, 88), QRect(312, 312, 262, 88),
    QRect(36, 210, 262, 88), QRect(312, 210, 262, 88)};
constexpr QRect totalTile(18, 26, 36, 36);
constexpr int totalTileRadius = 11;
constexpr QRect totalCaption(68, 47, 178, 18);
constexpr QRect totalNumber(68, 17, 178, 28);
constexpr int unitGap = 6;

constexpr QRect noteFrame(36, 108, 538, 88);
constexpr int noteWidth = 494;
constexpr int noteLineHeight = 17;
constexpr QRect shortcutsFrame(36, 42, 538, 52);
constexpr QRect shortcutsSymbol(20, 16, 20, 20);
constexpr QRect instructionFrame(52, 15, 464, 22);

/// By how much the middle of capitals lies above the baseline.
double rise(const QFont& font)
{
    const QFontMetricsF metrics(font);
    return (metrics.ascent() - metrics.descent()) / 2;
}

} // namespace

OverviewPage::OverviewPage(
    QWidget& parent, OverviewController& controller, const Localization& localization)
    : Page(parent, localization.LT(texts::overviewTitle), localization.LT(texts::overviewSubtitle))
    , m_controller(controller)
    , m_localization(localization)
{
    addPeriods();
    addTotals();
    addNote();
    addShortcuts();
    controller.setView(this);
    setContent(controller.content());
}

OverviewPage::~OverviewPage()
{
    m_controller.setView(nullptr);
}

void OverviewPage::pageShown()
{
    m_controller.pageShown();
}

void OverviewPage::pageHidden()
{
    m_controller.pageHidden();
}

void OverviewPage::addPeriods()
{
    // One figure catches the eye: that of today.
    m_today = addPeriod(periodX[0], texts::usageToday, brand::deepPurple());
    m_week = addPeriod(periodX[1], texts::usageThisWeek, brand::labelColor());
    m_month = addPeriod(periodX[2], texts::usageThisMonth, brand::labelColor());
    m_today.label->setObjectName(u"todayUsageLabel"_s);
    m_week.label->setObjectName(u"weekUsageLabel"_s);
    m_month.label->setObjectName(u"monthUsageLabel"_s);
}

OverviewPage::Figure OverviewPage::addPeriod(
    int x, const LocalizedText& caption, const QColor& color)
{
    const QString unit = m_localization.LT(texts::charactersUnit);
    auto* const card = new Card(*this, {QPoint(x, periodY), periodSize}, Card::smallRadius);
    auto* const title = new Label(*card, periodCaption, brand::tavRowTitleFont(),
        brand::secondaryLabelColor(), m_localization.LT(caption));
    auto* const number = new Label(*card, periodNumber, brand::tavFigureFont(), color);
    number->setFitting(elideAtOnce);
    new Label(*card, periodUnit, brand::tavBodyFont(), brand::secondaryLabelColor(), unit);
    return {number, title->fullText(), unit};
}

void OverviewPage::addTotals()
{
    m_totalTime = addTotal(totalFrames[0], u"clock"_s, texts::totalDictation);
    m_totalCharacters = addTotal(totalFrames[1], u"lines"_s, texts::dictatedCharacters);
    m_timeSaved = addTotal(totalFrames[2], u"hourglass"_s, texts::timeSaved);
    m_speed = addTotal(totalFrames[3], u"gauge"_s, texts::averageSpeed);
    m_totalTime.label->setObjectName(u"totalDictationTimeLabel"_s);
    m_totalCharacters.label->setObjectName(u"totalDictatedCharactersLabel"_s);
    m_timeSaved.label->setObjectName(u"timeSavedLabel"_s);
    m_speed.label->setObjectName(u"averageDictationSpeedLabel"_s);
    m_speed.unit = m_localization.LT(texts::charactersPerMinuteUnit);
    QRect unit = totalNumber;
    unit.setWidth(static_cast<int>(
        std::ceil(QFontMetricsF(brand::tavBodyFont()).horizontalAdvance(m_speed.unit))));
    m_speedUnit = new Label(*m_speed.label->parentWidget(), unit, brand::tavBodyFont(),
        brand::secondaryLabelColor(), m_speed.unit);
}

OverviewPage::Figure OverviewPage::addTotal(
    const QRect& frame, const QString& symbol, const LocalizedText& caption)
{
    auto* const card = new Card(*this, frame, Card::smallRadius);
    new Panel(*card, totalTile, totalTileRadius, brand::tint());
    new Symbol(*card, totalTile, symbol, brand::tavPurple());
    auto* const title = new Label(*card, totalCaption, brand::tavBodyFont(),
        brand::secondaryLabelColor(), m_localization.LT(caption));
    auto* const number =
        new Label(*card, totalNumber, brand::tavSmallFigureFont(), brand::labelColor());
    number->setFitting(elideAtOnce);
    return {number, title->fullText(), {}};
}

void OverviewPage::addNote()
{
    constexpr Fitting twoLines{0, 2};
    const QString footnote = m_localization.LT(texts::figuresFootnote);
    const bool isShort =
        fitText(footnote, brand::tavCaptionFont(), noteWidth, twoLines).lines.size() == 1;
    auto* const note = new Panel(*this, noteFrame, Card::smallRadius, brand::tint());
    new Label(*note, QRect(22, isShort ? 44 : 52, noteWidth, 20), brand::tavRowTitleFont(),
        brand::deepPurple(), m_localization.LT(texts::privateFigures));
    auto* const explanation =
        new Label(*note, isShort ? QRect(22, 24, noteWidth, 17) : QRect(22, 15, noteWidth, 34),
            brand::tavCaptionFont(), brand::secondaryLabelColor());
    explanation->setSecondLine(Label::SecondLine::Centred, noteLineHeight);
    explanation->setFitting(twoLines);
    explanation->setFullText(footnote);
}

void OverviewPage::addShortcuts()
{
    auto* const card = new Card(*this, shortcutsFrame, Card::smallRadius);
    new Symbol(*card, shortcutsSymbol, u"keyboard"_s, brand::deepPurple());
    m_instructionLabel =
        new Label(*card, instructionFrame, brand::tavBodyFont(), brand::labelColor());
    m_instructionLabel->setObjectName(u"instructionLabel"_s);
}

void OverviewPage::setContent(const OverviewContent& content)
{
    showLarge(m_today, content.todayUsageLabel);
    showLarge(m_week, content.weekUsageLabel);
    showLarge(m_month, content.monthUsageLabel);
    showFigure(m_totalTime, content.totalDictationTimeLabel);
    showFigure(m_totalCharacters, content.totalDictatedCharactersLabel);
    showFigure(m_timeSaved, content.timeSavedLabel);
    showFigure(m_speed, content.averageDictationSpeedLabel);
    placeSpeedUnit();
    m_instructionLabel->setFullText(content.instructionLabel);
}

void OverviewPage::showFigure(const Figure& figure, const QString& value)
{
    figure.label->setFullText(value);
    // The number alone says nothing to whoever does not see what stands around it.
    figure.label->setAccessibleName(
        u"%1: %2 %3"_s.arg(figure.caption, value, figure.unit).trimmed());
}

void OverviewPage::showLarge(const Figure& figure, const QString& value)
{
    const bool isTooWide =
        QFontMetricsF(brand::tavFigureFont()).horizontalAdvance(value) > periodNumber.width();
    figure.label->setFont(isTooWide ? brand::tavSmallFigureFont() : brand::tavFigureFont());
    showFigure(figure, value);
}

/// Behind the number, on its baseline; nowhere when the number leaves no room.
void OverviewPage::placeSpeedUnit()
{
    const QString& number = m_speed.label->fullText();
    const double width = QFontMetricsF(brand::tavSmallFigureFont()).horizontalAdvance(number);
    const int left = totalNumber.x() + static_cast<int>(std::ceil(width)) + unitGap;
    const auto lower = static_cast<int>(
        std::lround(rise(brand::tavSmallFigureFont()) - rise(brand::tavBodyFont())));
    const QRect frame = flipped(totalNumber, m_speedUnit->parentWidget()->height());
    m_speedUnit->move(left, frame.y() + lower);
    m_speedUnit->setVisible(
        !number.isEmpty() && left + m_speedUnit->width() <= totalNumber.right() + 1);
}

} // namespace tavrin::ui
