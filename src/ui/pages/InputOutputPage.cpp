#include "ui/pages/InputOutputPage.h"

#include "app/menu/StatusMenuTexts.h"
#include "app/pages/InputOutputController.h"
#include "app/pages/InputOutputTexts.h"
#include "app/settings/Localization.h"
#include "ui/controls/Card.h"
#include "ui/controls/Label.h"
#include "ui/controls/Popup.h"
#include "ui/controls/Symbol.h"
#include "ui/style/BrandStyle.h"

using namespace Qt::StringLiterals;

namespace tavrin::ui {
namespace {

/// The names of the popups, in the order of shortcutSlots.
constexpr std::array shortcutPopupNames{"shortcutPopup", "dictationSecondaryShortcutPopup",
    "translationShortcutPopup", "translationSecondaryShortcutPopup", "chatShortcutPopup",
    "chatSecondaryShortcutPopup"};

constexpr QRect statusCard(36, 28, 538, 40);

/// The popup below the shortcuts.
Popup* addOutput(Card& card, const QString& caption, const QString& objectName)
{
    addCaption(card, 16, caption);
    auto* const popup = new Popup(card, QRect(164, 16, 352, 30), caption);
    popup->setObjectName(objectName);
    return popup;
}

} // namespace

struct InputOutputPage::Operation {
    QRect frame;
    QString symbol;
    LocalizedText title;
    LocalizedText explanation;
    ShortcutSlot primary;
    ShortcutSlot secondary;
};

InputOutputPage::InputOutputPage(
    QWidget& parent, InputOutputController& controller, const Localization& localization)
    : Page(parent, localization.LT(texts::inputOutputTitle),
        localization.LT(texts::inputOutputSubtitle))
    , m_controller(controller)
    , m_localization(localization)
{
    setObjectName(u"inputOutputSettingsPage"_s);
    Card& dictation = addOperation(
        {QRect(36, 376, 538, 152), u"waveform"_s, texts::dictationCard, texts::dictationExplanation,
            ShortcutSlot::DictationPrimary, ShortcutSlot::DictationSecondary});
    m_outputStylePopup =
        addOutput(dictation, localization.LT(texts::writingStyle), u"outputStylePopup"_s);
    connect(m_outputStylePopup, &QComboBox::activated, this,
        [this](int row) { m_controller.selectStylePopup(row); });

    Card& translation = addOperation({QRect(36, 210, 538, 152), u"translation"_s,
        texts::translationCard, texts::translationExplanation, ShortcutSlot::TranslationPrimary,
        ShortcutSlot::TranslationSecondary});
    m_translationPopup =
        addOutput(translation, localization.LT(texts::targetLanguage), u"translationPopup"_s);
    connect(m_translationPopup, &QComboBox::activated, this,
        [this](int row) { m_controller.selectTranslationPopup(row); });

    addOperation({QRect(36, 82, 538, 114), u"chat"_s, texts::chatCard, texts::chatExplanation,
        ShortcutSlot::ChatPrimary, ShortcutSlot::ChatSecondary});
    addStatus();
    controller.setView(this);
    setContent(controller.content());
}

InputOutputPage::~InputOutputPage()
{
    m_controller.setView(nullptr);
}

void InputOutputPage::setContent(const InputOutputContent& content)
{
    const QStringList shortcuts = m_controller.shortcutTitles();
    for (std::size_t i = 0; i < m_shortcutPopups.size(); ++i)
        m_shortcutPopups.at(i)->setItems(shortcuts, content.shortcuts.rows.at(i));
    m_outputStylePopup->setItems(m_controller.outputStyleTitles(), content.output.outputStyle);
    m_translationPopup->setItems(
        m_controller.translationTargetTitles(), content.output.translationTarget);
    m_shortcutStatusLabel->setColor(content.shortcuts.status == ShortcutStatus::Conflict
            ? brand::systemOrange()
            : brand::green());
    m_shortcutStatusLabel->setFullText(content.shortcuts.statusText);
}

QWidget* InputOutputPage::firstControl() const
{
    return m_shortcutPopups.front();
}

Card& InputOutputPage::addOperation(const Operation& operation)
{
    auto* const card = new Card(*this, operation.frame);
    const int height = operation.frame.height();
    const QString title = m_localization.LT(operation.title);
    new Symbol(*card, QRect(22, height - 35, 20, 20), operation.symbol, brand::deepPurple());
    new Label(*card, QRect(50, height - 36, 466, 22), brand::tavCardTitleFont(),
        brand::labelColor(), title);
    new Label(*card, QRect(22, height - 58, 494, 20), brand::tavBodyFont(),
        brand::secondaryLabelColor(), m_localization.LT(operation.explanation));
    const int y = height - 98;
    addCaption(*card, y, m_localization.LT(texts::shortcuts));
    addShortcut(*card, QRect(164, y, 170, 30), operation.primary,
        m_localization.LT(texts::firstShortcut, title));
    addShortcut(*card, QRect(346, y, 170, 30), operation.secondary,
        m_localization.LT(texts::secondShortcut, title));
    return *card;
}

Popup& InputOutputPage::addShortcut(
    Card& card, const QRect& frame, ShortcutSlot slot, const QString& name)
{
    auto* const popup = new Popup(card, frame, name);
    const auto place = static_cast<std::size_t>(slot);
    popup->setObjectName(QLatin1StringView(shortcutPopupNames.at(place)));
    connect(popup, &QComboBox::activated, this,
        [this, slot](int row) { m_controller.selectShortcut(slot, row); });
    m_shortcutPopups.at(place) = popup;
    return *popup;
}

void InputOutputPage::addStatus()
{
    auto* const card = new Card(*this, statusCard, Card::smallRadius);
    m_shortcutStatusLabel =
        new Label(*card, QRect(22, 10, 494, 20), brand::tavCaptionFont(), brand::green());
    m_shortcutStatusLabel->setObjectName(u"shortcutStatusLabel"_s);
}

} // namespace tavrin::ui
