#include "ui/pages/GeneralPage.h"

#include "app/pages/GeneralController.h"
#include "app/pages/GeneralTexts.h"
#include "app/settings/Localization.h"
#include "ui/controls/Card.h"
#include "ui/controls/Label.h"
#include "ui/controls/Popup.h"
#include "ui/controls/Toggle.h"
#include "ui/style/BrandStyle.h"

using namespace Qt::StringLiterals;

namespace tavrin::ui {
namespace {

constexpr QRect languageCard(36, 416, 538, 112);
constexpr QRect targetsCard(36, 314, 538, 88);
constexpr QRect audioCard(36, 152, 538, 148);
constexpr int recogniserHeight = 56; ///< What the audio card grows by, downwards.
constexpr int textWidth = 494;

template <typename Item>
QStringList titlesOf(const QList<Item>& items)
{
    QStringList titles;
    for (const Item& item : items)
        titles.append(item.title);
    return titles;
}

} // namespace

GeneralPage::GeneralPage(
    QWidget& parent, GeneralController& controller, const Localization& localization)
    : Page(parent, localization.LT(texts::generalTitle), localization.LT(texts::generalSubtitle))
    , m_controller(controller)
    , m_localization(localization)
{
    setObjectName(u"generalSettingsPage"_s);
    addInterfaceLanguage();
    addTranslationLanguages();
    addAudio(controller.content().recogniser.has_value());
    controller.setView(this);
    controller.refreshMicrophoneControls();
}

GeneralPage::~GeneralPage()
{
    m_controller.setView(nullptr);
}

void GeneralPage::setContent(const GeneralContent& content)
{
    m_interfaceLanguagePopup->setItems(
        GeneralController::interfaceLanguageTitles(), content.interfaceLanguage);
    m_microphonePopup->setItems(titlesOf(content.microphones.items), content.microphones.selected);
    const QSignalBlocker noToggle(m_muteDuringRecordingToggle);
    m_muteDuringRecordingToggle->setChecked(content.mutesDuringRecording);
    if (!m_recogniserPopup || !content.recogniser)
        return;
    const RecogniserContent& recogniser = *content.recogniser;
    m_recogniserPopup->setItems(
        titlesOf(recogniser.recognisers.items), recogniser.recognisers.selected);
    m_recogniserLanguagePopup->setItems(
        titlesOf(recogniser.languages.items), recogniser.languages.selected);
    m_recogniserLanguagePopup->setEnabled(recogniser.hasLanguages);
}

QWidget* GeneralPage::firstControl() const
{
    return m_interfaceLanguagePopup;
}

void GeneralPage::addInterfaceLanguage()
{
    auto* const card = new Card(*this, languageCard);
    const QString title = m_localization.LT(texts::interfaceLanguage);
    new Label(*card, QRect(22, 73, 308, 22), brand::tavCardTitleFont(), brand::labelColor(), title);
    m_interfaceLanguagePopup = new Popup(*card, QRect(346, 69, 170, 30), title);
    m_interfaceLanguagePopup->setObjectName(u"interfaceLanguagePopup"_s);
    connect(m_interfaceLanguagePopup, &QComboBox::activated, this,
        [this](int row) { m_controller.selectInterfaceLanguage(row); });
    new Label(*card, QRect(22, 43, textWidth, 20), brand::tavBodyFont(),
        brand::secondaryLabelColor(), m_localization.LT(texts::interfaceLanguageExplanation));
    new Label(*card, QRect(22, 18, textWidth, 18), brand::tavCaptionFont(),
        brand::secondaryLabelColor(), m_localization.LT(texts::reopenAfterLanguageChange));
}

/// Two lines are reserved; where one will do, title and text are in the middle together.
void GeneralPage::addTranslationLanguages()
{
    auto* const card = new Card(*this, targetsCard);
    const QString text = m_controller.translationLanguagesCount();
    const bool takesTwoLines =
        fitText(text, brand::tavBodyFont(), textWidth, Fitting()).lines.size() > 1;
    new Label(*card, QRect(22, takesTwoLines ? 53 : 45, textWidth, 22), brand::tavCardTitleFont(),
        brand::labelColor(), m_localization.LT(texts::translationLanguages));
    new Label(*card, takesTwoLines ? QRect(22, 13, textWidth, 38) : QRect(22, 22, textWidth, 20),
        brand::tavBodyFont(), brand::secondaryLabelColor(), text);
}

void GeneralPage::addAudio(bool hasRecogniser)
{
    const int below = hasRecogniser ? recogniserHeight : 0;
    auto* const card = new Card(*this, audioCard.adjusted(0, -below, 0, 0));
    new Label(*card, QRect(22, 112 + below, textWidth, 22), brand::tavCardTitleFont(),
        brand::labelColor(), m_localization.LT(texts::audio));

    const QString microphone = m_localization.LT(texts::preferredMicrophone);
    addCaption(*card, 73 + below, microphone);
    m_microphonePopup = new Popup(*card, QRect(164, 73 + below, 352, 30), microphone);
    m_microphonePopup->setObjectName(u"microphonePopup"_s);
    connect(m_microphonePopup, &QComboBox::activated, this,
        [this](int row) { m_controller.selectPreferredMicrophone(row); });
    static_cast<void>(addHairline(*card, QRect(22, 60 + below, textWidth, 1)));

    const QString mute = m_localization.LT(texts::muteOtherAudio);
    new Label(
        *card, QRect(22, 30 + below, 440, 20), brand::tavBodyFont(), brand::labelColor(), mute);
    m_muteDuringRecordingToggle = new Switch(*card, QRect(478, 20 + below, 38, 22), mute);
    m_muteDuringRecordingToggle->setObjectName(u"muteDuringRecordingToggle"_s);
    connect(m_muteDuringRecordingToggle, &QAbstractButton::toggled, this,
        [this](bool on) { m_controller.toggleMuteDuringRecording(on); });
    new Label(*card, QRect(22, 11 + below, 440, 18), brand::tavCaptionFont(),
        brand::secondaryLabelColor(), m_localization.LT(texts::audioIsRestored));
    if (hasRecogniser)
        addRecogniser(*card);
}

void GeneralPage::addRecogniser(Card& card)
{
    static_cast<void>(addHairline(card, QRect(22, 56, textWidth, 1)));
    addCaption(card, 14, m_localization.LT(texts::speechRecognition));
    m_recogniserPopup =
        new Popup(card, QRect(164, 14, 170, 30), m_localization.LT(texts::recogniser));
    m_recogniserPopup->setObjectName(u"recogniserPopup"_s);
    connect(m_recogniserPopup, &QComboBox::activated, this,
        [this](int row) { m_controller.selectRecogniser(row); });
    m_recogniserLanguagePopup =
        new Popup(card, QRect(346, 14, 170, 30), m_localization.LT(texts::recogniserLanguage));
    m_recogniserLanguagePopup->setObjectName(u"recogniserLanguagePopup"_s);
    connect(m_recogniserLanguagePopup, &QComboBox::activated, this,
        [this](int row) { m_controller.selectRecogniserLanguage(row); });
}

} // namespace tavrin::ui
