#include "ui/pages/HealthPage.h"

#include "app/health/HealthController.h"
#include "app/health/HealthTexts.h"
#include "app/settings/Localization.h"
#include "ui/controls/Button.h"
#include "ui/controls/Card.h"
#include "ui/controls/Label.h"
#include "ui/controls/Placing.h"
#include "ui/style/BrandStyle.h"

#include <QFontMetricsF>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace tavrin::ui {
namespace {

// Frames in points from the bottom left.
constexpr QRect cardFrame(36, 304, 538, 224);
constexpr QRect areaFrame(4, 6, 530, 212);
constexpr int firstRow = 172;
constexpr int rowDistance = 40;
constexpr int titleWidth = 84;
constexpr int statusWidth = 268;
constexpr int tightLine = 15;

constexpr int noteCardTop = 290;
constexpr int noteTextLeft = 116;
constexpr int noteTextWidth = 400;
constexpr int noteButtonLeft = 394;
constexpr int noteLine = 17;
/// As far apart as there is room for: the time below them stays on the page.
constexpr std::array<HealthPage::NoteSpacing, 3> noteSpacings{
    {{28, 3, 52}, {19, 3, 40}, {19, 2, 40}}};
constexpr QSize buttonSize(122, 28);

constexpr int updatedHeight = 18;
constexpr int updatedGap = 12;

constexpr double titleSize = 13; // As tavRowTitleFont().
constexpr double statusSize = 12.5; // As tavBodyFont().
constexpr double sizeStep = 0.5;
constexpr double titleMostSmaller = 1.5;
constexpr double statusMostSmaller = 1;

QColor colorOf(HealthColor color)
{
    switch (color) {
    case HealthColor::Healthy:
        return brand::blue();
    case HealthColor::SignedIn:
        return brand::deepPurple();
    case HealthColor::Problem:
        return brand::systemOrange();
    case HealthColor::Unknown:
        return brand::secondaryLabelColor();
    }
    Q_UNREACHABLE();
}

/// The largest size, at most @p mostSmaller points below @p size, in which all @p texts fit
/// @p width; else the smallest, or one that is smaller still for a word that would be divided.
QFont columnFont(
    const QStringList& texts, double size, QFont::Weight weight, double width, double mostSmaller)
{
    for (double less = 0;; less += sizeStep) {
        const QFont candidate = brand::systemFont(size - less, weight);
        const QFontMetricsF metrics(candidate);
        const auto fit = [&](const QStringList& pieces) {
            return std::ranges::all_of(pieces,
                [&](const QString& piece) { return metrics.horizontalAdvance(piece) <= width; });
        };
        const bool isSmallest = less >= mostSmaller + sizeStep;
        if (fit(texts) || isSmallest || (less >= mostSmaller && fit(texts.join(u' ').split(u' '))))
            return candidate;
    }
}

void setColumnFont(Label& label, const QFont& font)
{
    label.setFont(font);
    label.setSecondLine(Label::SecondLine::Centred, tightLine);
}

/// The column has chosen its size: what is too wide for it takes more lines.
Label* addColumnLabel(
    QWidget& parent, const QRect& frame, const QFont& font, int mostLines, int lineHeight)
{
    auto* const label = new Label(parent, frame, font, brand::labelColor());
    label->setFitting({0, mostLines});
    label->setSecondLine(Label::SecondLine::Centred, lineHeight);
    return label;
}

} // namespace

HealthPage::HealthPage(
    QWidget& parent, HealthController& controller, const Localization& localization)
    : Page(parent, localization.LT(texts::permissionsAndHealth),
        localization.LT(texts::permissionsAndHealthSubtitle))
    , m_controller(controller)
    , m_titleFont(brand::tavRowTitleFont())
    , m_statusFont(brand::tavBodyFont())
{
    setObjectName(u"healthPage"_s);
    auto* const card = new Card(*this, cardFrame);
    auto* const area = new QWidget(card);
    place(*area, areaFrame);
    const HealthContent& content = controller.content();
    int y = firstRow;
    for (const HealthItem item : healthItems) {
        const HealthRow& row = content.row(item);
        addHealthRowTo(*area, healthKeys.at(static_cast<std::size_t>(item)).toString(), row.title,
            y, row.button, [this, item] { m_controller.press(item); });
        y -= rowDistance;
    }
    fitTitles();
    m_updatedPlace = new QWidget(this);
    m_updatedPlace->resize(cardFrame.width(), updatedHeight);
    m_healthUpdatedLabel = new Label(*m_updatedPlace, QRect(0, 0, cardFrame.width(), updatedHeight),
        brand::tavCaptionFont(), brand::secondaryLabelColor());
    m_healthUpdatedLabel->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    m_healthUpdatedLabel->setObjectName(u"healthUpdatedLabel"_s);
    m_controller.setView(this);
}

HealthPage::~HealthPage()
{
    m_controller.setView(nullptr);
}

void HealthPage::setContent(const HealthContent& content)
{
    fitStatuses(content);
    for (const HealthItem item : healthItems)
        showRow(healthKeys.at(static_cast<std::size_t>(item)).toString(), content.row(item));
    showNotes(content.notes);
    m_healthUpdatedLabel->setFullText(content.updated);
}

QWidget* HealthPage::firstControl() const
{
    for (const QStringView key : healthKeys) {
        Button* const button = m_healthButtons.value(key.toString());
        if (button->isVisibleTo(this))
            return button;
    }
    return nullptr;
}

void HealthPage::pageShown()
{
    m_controller.pageShown();
}

void HealthPage::pageHidden()
{
    m_controller.pageHidden();
}

void HealthPage::addHealthRowTo(QWidget& area, const QString& key, const QString& title, int y,
    const QString& button, std::function<void()> action)
{
    constexpr int washRadius = 10;
    auto* const wash = new Panel(area, QRect(6, y - 4, 518, 36), washRadius, brand::wash());
    auto* const titleLabel =
        addColumnLabel(area, QRect(18, y + 4, titleWidth, 22), m_titleFont, 2, tightLine);
    titleLabel->setFullText(title);
    titleLabel->setObjectName(u"healthTitle."_s + key);
    auto* const label =
        addColumnLabel(area, QRect(112, y + 4, statusWidth, 22), m_statusFont, 2, tightLine);
    label->setTextAsToolTip();
    label->setFullText(texts::checking.toString());
    label->setObjectName(u"healthLabel."_s + key);
    auto* const mend =
        new Button(area, QRect(QPoint(390, y), buttonSize), button, Button::Look::SmallSecondary);
    mend->setObjectName(u"healthButton."_s + key);
    mend->setAccessibleName(title + u": "_s + button);
    connect(mend, &QPushButton::clicked, this, std::move(action));
    m_washes.insert(key, wash);
    m_healthTitles.insert(key, titleLabel);
    m_healthLabels.insert(key, label);
    m_healthButtons.insert(key, mend);
}

void HealthPage::fitTitles()
{
    QStringList titles;
    for (const Label* title : std::as_const(m_healthTitles))
        titles.append(title->fullText());
    m_titleFont = columnFont(titles, titleSize, QFont::DemiBold, titleWidth, titleMostSmaller);
    for (Label* title : std::as_const(m_healthTitles))
        setColumnFont(*title, m_titleFont);
}

void HealthPage::showRow(const QString& key, const HealthRow& row)
{
    Label* const label = m_healthLabels.value(key);
    label->setColor(colorOf(row.color));
    label->setFullText(row.status);
    m_washes.value(key)->setVisible(row.color == HealthColor::Problem);
    m_healthButtons.value(key)->setVisible(row.hasButton);
}

void HealthPage::fitStatuses(const HealthContent& content)
{
    QStringList statuses;
    for (const HealthRow& row : content.rows)
        statuses.append(row.status);
    const QFont font =
        columnFont(statuses, statusSize, QFont::Normal, statusWidth, statusMostSmaller);
    if (font == m_statusFont)
        return;
    m_statusFont = font;
    m_notes.reset(); // They are drawn anew in the new size.
    for (Label* label : std::as_const(m_healthLabels))
        setColumnFont(*label, m_statusFont);
}

void HealthPage::showNotes(const QList<HealthNote>& notes)
{
    if (notes == m_notes)
        return;
    m_notes = notes;
    if (m_noteCard) {
        // One of its buttons may be what led here.
        m_noteCard->hide();
        m_noteCard->setObjectName(QString());
        m_noteCard->deleteLater();
        m_noteCard = nullptr;
    }
    int bottom = cardFrame.y();
    if (!notes.isEmpty()) {
        constexpr int mostHeight = noteCardTop - updatedGap - updatedHeight - 4;
        int height = 0;
        for (const NoteSpacing& spacing : noteSpacings) {
            m_noteSpacing = spacing;
            height = 0;
            for (const HealthNote& note : notes)
                height += heightOf(note);
            if (height <= mostHeight)
                break;
        }
        bottom = noteCardTop - height;
        m_noteCard = new Card(
            *this, QRect(cardFrame.x(), bottom, cardFrame.width(), height), Card::smallRadius);
        int y = height;
        for (const HealthNote& note : notes) {
            y -= heightOf(note);
            addNote(*m_noteCard, note, y);
        }
        m_noteCard->setObjectName(u"healthNotes"_s);
        m_noteCard->show();
    }
    place(*m_updatedPlace,
        QRect(
            cardFrame.x(), bottom - updatedGap - updatedHeight, cardFrame.width(), updatedHeight));
    update(); // The card's shadow.
}

void HealthPage::addNote(Card& card, const HealthNote& note, int y)
{
    const int height = heightOf(note);
    if (note.color == HealthColor::Problem) {
        constexpr int washRadius = 10;
        new Panel(card, QRect(10, y + 6, 518, height - 12), washRadius, brand::wash());
    }
    auto* const title = addColumnLabel(
        card, QRect(22, y + height / 2 - 11, titleWidth, 22), m_titleFont, 2, tightLine);
    title->setFullText(note.title);
    const int width = note.button.isEmpty() ? noteTextWidth : statusWidth;
    auto* const text = addColumnLabel(card, QRect(noteTextLeft, y + 8, width, height - 16),
        m_statusFont, m_noteSpacing.mostLines, noteLine);
    text->setColor(colorOf(note.color));
    text->setFullText(note.text);
    if (note.button.isEmpty())
        return;
    const QPoint place(noteButtonLeft, y + (height - buttonSize.height()) / 2);
    auto* const button =
        new Button(card, QRect(place, buttonSize), note.button, Button::Look::SmallSecondary);
    button->setAccessibleName(note.title + u": "_s + note.button);
    connect(button, &QPushButton::clicked, this,
        [this, action = note.action] { m_controller.press(action); });
}

int HealthPage::heightOf(const HealthNote& note) const
{
    const int width = note.button.isEmpty() ? noteTextWidth : statusWidth;
    const auto lines = static_cast<int>(
        fitText(note.text, m_statusFont, width, {0, m_noteSpacing.mostLines}).lines.size());
    return std::max(m_noteSpacing.leastHeight, m_noteSpacing.padding + 16 * lines);
}

} // namespace tavrin::ui
