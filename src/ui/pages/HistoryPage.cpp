#include "ui/pages/HistoryPage.h"

#include "app/pages/history/HistoryController.h"
#include "app/pages/history/HistoryTexts.h"
#include "app/settings/Localization.h"
#include "platform/DesktopTexts.h"
#include "ui/controls/Button.h"
#include "ui/controls/Card.h"
#include "ui/controls/Label.h"
#include "ui/controls/Popup.h"
#include "ui/controls/Symbol.h"
#include "ui/controls/TextField.h"
#include "ui/pages/HistoryList.h"
#include "ui/style/BrandStyle.h"

#include <QKeyEvent>
#include <QShortcut>

#include <initializer_list>

using namespace Qt::StringLiterals;

namespace tavrin::ui {
namespace {

constexpr QRect retentionCard(36, 452, 538, 76);
constexpr int explanationWidth = 352;
constexpr int captionLineHeight = 17;
constexpr QRect popupFrame(386, 23, 130, 30);
constexpr QRect storageFrame(36, 409, 330, 30);
constexpr QRect showFilesFrame(382, 409, 104, 30);
constexpr QRect clearFrame(494, 409, 80, 30);
constexpr QRect findFrame(36, 406, 538, 36);
constexpr QRect listFrame(20, 0, 590, 398);
constexpr QRect emptyTile(279, 189, 52, 52);
constexpr QRect emptyTextFrame(36, 156, 538, 19);
constexpr int tileRadius = 16;
constexpr double emptyTextSize = 13;

} // namespace

HistoryPage::HistoryPage(
    QWidget& parent, HistoryController& controller, const Localization& localization)
    : Page(parent, localization.LT(texts::historyTitle),
        localization.desktopText(&DesktopTexts::historySubtitle, texts::historySubtitle))
    , m_controller(controller)
    , m_localization(localization)
{
    setObjectName(u"historySettingsPage"_s);
    addRetention();
    addStorage();
    addFind();
    addList();
    addEmptyState();
    controller.setView(this);
    setContent(controller.content());
}

HistoryPage::~HistoryPage()
{
    m_controller.setView(nullptr);
}

void HistoryPage::pageShown()
{
    m_controller.pageShown();
}

void HistoryPage::pageHidden()
{
    m_controller.pageHidden();
}

void HistoryPage::addRetention()
{
    constexpr Fitting twoLines{0, 2};
    const QString text = m_localization.desktopText(
        &DesktopTexts::retentionExplanation, texts::retentionExplanation);
    const bool isShort =
        fitText(text, brand::tavCaptionFont(), explanationWidth, twoLines).lines.size() == 1;
    auto* const card = new Card(*this, retentionCard, Card::smallRadius);
    new Label(*card, isShort ? QRect(22, 37, 300, 20) : QRect(22, 45, 300, 20),
        brand::tavRowTitleFont(), brand::labelColor(), m_localization.LT(texts::retention));
    auto* const explanation = new Label(*card,
        isShort ? QRect(22, 20, explanationWidth, 17) : QRect(22, 11, explanationWidth, 34),
        brand::tavCaptionFont(), brand::secondaryLabelColor());
    explanation->setSecondLine(Label::SecondLine::Centred, captionLineHeight);
    explanation->setFitting(twoLines);
    explanation->setFullText(text);

    m_historyRetentionPopup = new Popup(*card, popupFrame, m_localization.LT(texts::retention));
    m_historyRetentionPopup->setObjectName(u"historyRetentionPopup"_s);
    connect(m_historyRetentionPopup, &QComboBox::activated, this,
        [this](int index) { m_controller.selectHistoryRetention(index); });
}

void HistoryPage::addStorage()
{
    m_historyStorageLabel =
        new Label(*this, storageFrame, brand::tavCaptionFont(), brand::secondaryLabelColor());
    m_historyStorageLabel->setObjectName(u"historyStorageLabel"_s);
    m_showFiles = new Button(
        *this, showFilesFrame, m_localization.LT(texts::showFiles), Button::Look::SmallSecondary);
    connect(
        m_showFiles, &QAbstractButton::clicked, this, [this] { m_controller.openHistoryFolder(); });
    m_clear = new Button(*this, clearFrame, m_localization.LT(texts::clearHistoryRecords),
        Button::Look::SmallSecondary);
    connect(m_clear, &QAbstractButton::clicked, this, [this] { m_controller.clearHistory(); });
}

void HistoryPage::addFind()
{
    m_findField = new TextField(
        *this, findFrame, m_localization.LT(texts::searchHistory), TextField::Kind::Search);
    m_findField->setObjectName(u"historySearchField"_s);
    m_findField->hide();
    connect(m_findField, &QLineEdit::textChanged, this,
        [this](const QString& text) { m_controller.find(text); });
    connect(m_findField, &QLineEdit::returnPressed, this,
        [this] { m_list->takeKeyboard(Qt::TabFocusReason); });
    auto* const shortcut = new QShortcut(QKeySequence::Find, this);
    connect(shortcut, &QShortcut::activated, this, [this] { beginFind(); });
}

void HistoryPage::addList()
{
    m_list = new HistoryList(*this, listFrame, m_localization,
        {.copy = [this](const QString& id) { m_controller.copyHistoryRecord(id); },
            .toggleOriginal = [this](const QString& id) { m_controller.toggleHistoryOriginal(id); },
            .remove = [this](const QString& id) { m_controller.deleteHistoryRecord(id); },
            .toggleWholeText = [this](const QString& id) { m_controller.toggleWholeText(id); }});
}

void HistoryPage::addEmptyState()
{
    m_emptyArt = {new Panel(*this, emptyTile, tileRadius, brand::tint()),
        new Symbol(*this, emptyTile, u"waveform-large"_s, brand::tavPurple())};
    m_emptyLabel = new Label(*this, emptyTextFrame, brand::systemFont(emptyTextSize, QFont::Normal),
        brand::secondaryLabelColor());
    m_emptyLabel->setAlignment(Qt::AlignCenter);
}

void HistoryPage::setContent(const HistoryContent& content)
{
    m_historyRetentionPopup->setItems(
        m_controller.retentionTitles(), content.historyRetentionPopup);
    m_historyStorageLabel->setFullText(content.historyStorageLabel);

    for (QWidget* const widget :
        std::initializer_list<QWidget*>{m_historyStorageLabel, m_showFiles, m_clear})
        widget->setVisible(!content.isFinding);
    m_findField->setVisible(content.isFinding);
    // Setting the text that is there already would move the caret.
    if (m_findField->text() != content.query)
        m_findField->setText(content.query);
    m_findField->setNote(content.matchCount);

    const bool isAnotherSearch = content.query != m_query;
    m_query = content.query;
    m_list->setContent(
        {content.rows, content.openedRecordIDs, content.copiedRecordID, content.query},
        isAnotherSearch);
    showEmptyText(content);
}

void HistoryPage::showEmptyText(const HistoryContent& content)
{
    m_emptyLabel->setFullText(content.emptyText);
    const bool isEmpty = !content.emptyText.isEmpty();
    m_emptyLabel->setVisible(isEmpty);
    for (QWidget* const widget : m_emptyArt)
        widget->setVisible(isEmpty);
    m_list->setVisible(!isEmpty);
}

void HistoryPage::beginFind()
{
    m_controller.beginFind();
    m_findField->setFocus(Qt::ShortcutFocusReason);
    m_findField->selectAll();
}

void HistoryPage::endFind()
{
    m_controller.endFind();
    if (!m_list->takeKeyboard(Qt::TabFocusReason))
        m_historyRetentionPopup->setFocus(Qt::TabFocusReason);
}

void HistoryPage::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Escape && m_findField->isVisibleTo(this))
        endFind();
    else if (event->key() == Qt::Key_Down && m_findField->hasFocus())
        m_list->takeKeyboard(Qt::TabFocusReason);
    else
        Page::keyPressEvent(event);
}

QWidget* HistoryPage::firstControl() const
{
    return m_historyRetentionPopup;
}

} // namespace tavrin::ui
