#include "ui/pages/DictionaryPage.h"

#include "app/pages/DictionaryController.h"
#include "app/pages/DictionaryTexts.h"
#include "app/settings/Localization.h"
#include "ui/controls/Button.h"
#include "ui/controls/Card.h"
#include "ui/controls/Label.h"
#include "ui/controls/Segments.h"
#include "ui/controls/Symbol.h"
#include "ui/controls/TextField.h"
#include "ui/controls/Toggle.h"
#include "ui/pages/DictionaryList.h"
#include "ui/style/BrandStyle.h"

#include <QFontMetricsF>
#include <QKeyEvent>
#include <QRadioButton>
#include <QScopedValueRollback>

#include <algorithm>
#include <cmath>
#include <limits>

using namespace Qt::StringLiterals;

namespace tavrin::ui {
namespace {

constexpr QRect optionFrame(36, 408, 360, 30);
constexpr QRect listCard(36, 62, 538, 332);
constexpr QRect emptyTile(243, 157, 52, 52);
constexpr QRect emptyText(22, 123, 494, 20);
constexpr int tileRadius = 16;
constexpr double emptyTextSize = 13;

/// As wide as box and title are, so that a press beside them does nothing.
QRect optionWithTitle(const QString& title)
{
    constexpr int boxAndGap = 24;
    constexpr int slack = 4;
    const double text = QFontMetricsF(brand::tavControlFont()).horizontalAdvance(title);
    QRect frame = optionFrame;
    frame.setWidth(std::min(frame.width(), boxAndGap + static_cast<int>(std::ceil(text)) + slack));
    return frame;
}

} // namespace

DictionaryPage::DictionaryPage(
    QWidget& parent, DictionaryController& controller, const Localization& localization)
    : Page(
        parent, localization.LT(texts::dictionaryTitle), localization.LT(texts::dictionarySubtitle))
    , m_controller(controller)
    , m_localization(localization)
{
    setObjectName(u"dictionarySettingsPage"_s);
    addSearch();
    addNewTerm();
    addOptions();
    addTerms();
    orderTabs();
    controller.setView(this);
    setContent(controller.content());
}

DictionaryPage::~DictionaryPage()
{
    m_controller.setView(nullptr);
}

void DictionaryPage::setContent(const DictionaryContent& content)
{
    const QScopedValueRollback showing(m_isShowing, true);
    // Setting the text that is there already would move the caret.
    if (m_dictionarySearchField->text() != content.searchText)
        m_dictionarySearchField->setText(content.searchText);
    m_dictionaryFilterControl->setSelected(static_cast<qsizetype>(content.filter));
    if (m_dictionaryNewTermField->text() != content.newTerm)
        m_dictionaryNewTermField->setText(content.newTerm);
    const QSignalBlocker noToggle(m_learnCorrections);
    m_learnCorrections->setChecked(content.learnsCorrections);
    m_countLabel->setFullText(content.count);

    const bool otherTerms =
        content.searchText != m_shown.searchText || content.filter != m_shown.filter;
    m_list->setRows(content.rows, otherTerms);
    m_shown = content;
    m_shown.rows.clear();
    showEmptyText(content.emptyText);
}

QWidget* DictionaryPage::firstControl() const
{
    return m_dictionarySearchField;
}

void DictionaryPage::keyPressEvent(QKeyEvent* event)
{
    const bool isSearching = m_dictionarySearchField->hasFocus();
    if (isSearching && event->key() == Qt::Key_Escape)
        m_dictionarySearchField->clear();
    else if (isSearching && event->key() == Qt::Key_Down)
        m_list->goToTop();
    else
        Page::keyPressEvent(event);
}

void DictionaryPage::addSearch()
{
    m_dictionarySearchField = new TextField(*this, QRect(36, 494, 300, 34),
        m_localization.LT(texts::searchTerms), TextField::Kind::Search);
    m_dictionarySearchField->setObjectName(u"dictionarySearchField"_s);
    connect(m_dictionarySearchField, &QLineEdit::textChanged, this, [this](const QString& text) {
        if (!m_isShowing)
            m_controller.searchTerms(text);
    });
    m_dictionaryFilterControl = new Segments(*this, QRect(348, 494, 226, 34),
        {m_localization.LT(texts::allTerms), m_localization.LT(texts::learnedTerms),
            m_localization.LT(texts::manualTerms)});
    m_dictionaryFilterControl->setObjectName(u"dictionaryFilterControl"_s);
    m_dictionaryFilterControl->setHandler(
        [this](qsizetype index) { m_controller.selectFilter(index); });
}

void DictionaryPage::addNewTerm()
{
    m_dictionaryNewTermField = new TextField(
        *this, QRect(36, 450, 418, 34), m_localization.LT(texts::enterTerm), TextField::Kind::Add);
    m_dictionaryNewTermField->setObjectName(u"dictionaryNewTermField"_s);
    m_dictionaryNewTermField->setMaxLength(std::numeric_limits<int>::max());
    m_addButton = new Button(
        *this, QRect(464, 450, 110, 34), m_localization.LT(texts::addTerm), Button::Look::Primary);
    m_addButton->setObjectName(u"addTermButton"_s);
    connect(m_dictionaryNewTermField, &QLineEdit::textChanged, this, [this](const QString& text) {
        if (!m_isShowing)
            m_controller.enterNewTerm(text);
    });
    connect(
        m_dictionaryNewTermField, &QLineEdit::returnPressed, m_addButton, &QAbstractButton::click);
    connect(m_addButton, &QAbstractButton::clicked, this, [this] {
        m_controller.addDictionaryTerm();
        if (m_dictionaryNewTermField->text().isEmpty())
            m_list->showTop();
    });
}

void DictionaryPage::addOptions()
{
    const QString title = m_localization.LT(texts::learnCorrections);
    m_learnCorrections = new CheckBox(*this, optionWithTitle(title), title);
    m_learnCorrections->setObjectName(u"learnCorrectionsBox"_s);
    connect(m_learnCorrections, &QAbstractButton::toggled, this,
        [this](bool on) { m_controller.toggleAutomaticDictionaryLearning(on); });
    m_writingStyleButton = new Button(*this, QRect(444, 408, 130, 30),
        m_localization.LT(texts::openWritingStyle), Button::Look::Secondary);
    m_writingStyleButton->setObjectName(u"writingStyleButton"_s);
    connect(m_writingStyleButton, &QAbstractButton::clicked, this,
        [this] { m_controller.showPersonalizationWindow(); });
}

void DictionaryPage::addTerms()
{
    auto* const card = new Card(*this, listCard);
    auto* const tile = new Panel(*card, emptyTile, tileRadius, brand::tint());
    m_emptyArt = {tile, new Symbol(*card, emptyTile, u"book-large"_s, brand::tavPurple())};
    m_emptyLabel = new Label(*card, emptyText, brand::systemFont(emptyTextSize, QFont::Normal),
        brand::secondaryLabelColor());
    m_emptyLabel->setAlignment(Qt::AlignCenter);
    m_list = new DictionaryList(*card, m_localization,
        {.editTerm = [this](const QString& term) { m_controller.editDictionaryTerm(term); },
            .deleteTerm = [this](
                              const QString& term) { m_controller.deleteDictionaryTerm(term); }});
    m_list->setAccessibleName(m_localization.LT(texts::dictionaryTitle));
    m_countLabel = new Label(
        *this, QRect(36, 30, 538, 20), brand::tavCaptionFont(), brand::secondaryLabelColor());
}

/// In reading order; the rows follow by themselves.
void DictionaryPage::orderTabs()
{
    QList<QWidget*> order{m_dictionarySearchField};
    for (QRadioButton* const segment : m_dictionaryFilterControl->buttons())
        order.append(segment);
    order +=
        {m_dictionaryNewTermField, m_addButton, m_learnCorrections, m_writingStyleButton, m_list};
    for (qsizetype i = 1; i < order.size(); ++i)
        setTabOrder(order[i - 1], order[i]);
}

void DictionaryPage::showEmptyText(const QString& text)
{
    for (QWidget* const art : m_emptyArt)
        art->setVisible(!text.isEmpty());
    m_emptyLabel->setFullText(text);
    m_emptyLabel->setVisible(!text.isEmpty());
    m_list->setVisible(text.isEmpty());
}

} // namespace tavrin::ui
