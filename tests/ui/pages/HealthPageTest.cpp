#include "ui/pages/HealthPage.h"

#include "app/health/HealthController.h"
#include "app/health/HealthFixture.h"
#include "platform/linux/LinuxTexts.h"
#include "support/ports/ScriptedAlerts.h"
#include "ui/controls/Button.h"
#include "ui/controls/Card.h"
#include "ui/pages/PageWindow.h"

#include <optional>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace tavrin {
namespace {

const QStringList languages{u"zh-Hans"_s, u"zh-Hant"_s, u"en"_s};
const QStringList keyNames{
    u"accessibility"_s, u"microphone"_s, u"speech"_s, u"api"_s, u"delivery"_s};

class HealthPageTest : public testing::HealthFixture {
protected:
    testing::ScriptedAlerts alerts;
    QStringList trace;
    testing::PageWindow window;
    std::optional<HealthController> controller;
    std::optional<ui::HealthPage> page;

    void TearDown() override
    {
        page.reset();
        controller.reset();
        EXPECT_EQ(time.pending(), 0U);
    }

    /// The page, in a window that nobody sees.
    void build()
    {
        page.reset();
        controller.emplace(HealthController::Neighbours{
            .sources = sources(),
            .alerts = alerts,
            .mainQueue = time,
            .configureActiveService = [this] { trace.append(u"sign in"_s); },
            .showHistoryWindow = [this] { trace.append(u"history"_s); },
            .showShortcuts = [this] { trace.append(u"shortcuts"_s); },
        });
        page.emplace(window, *controller, localization());
    }

    void open()
    {
        build();
        page->show(); // In a window that is open already, too.
        window.open();
    }

    /// As where everything is wrong.
    void breakEverything()
    {
        accessibility.trusted = false;
        permissions.microphone = AuthorizationStatus::NotDetermined;
        permissions.speech = AuthorizationStatus::NotDetermined;
        preferences.setValue(keys::lastDeliveryVerified, false);
        preferences.setValue(keys::lastDeliveryReason, u"无法重新激活目标应用"_s);
    }

    [[nodiscard]] ui::Label* label(const QString& key) const
    {
        return page->findChild<ui::Label*>(u"healthLabel."_s + key);
    }

    [[nodiscard]] ui::Label* title(const QString& key) const
    {
        return page->findChild<ui::Label*>(u"healthTitle."_s + key);
    }

    [[nodiscard]] ui::Button* button(const QString& key) const
    {
        return page->findChild<ui::Button*>(u"healthButton."_s + key);
    }

    [[nodiscard]] QRect frameOf(const QWidget* part) const
    {
        return part ? testing::PageWindow::frameIn(*page, *part) : QRect();
    }

    /// The same in the area of the rows.
    [[nodiscard]] QRect rowFrameOf(const QWidget* part) const
    {
        return frameOf(part).translated(-40, -310);
    }

    /// Two lines stand about the same centre as one.
    void expectFrame(const ui::Label* part, const QRect& frame) const
    {
        const QRect shown = rowFrameOf(part);
        if (part->lineCount() == 1) {
            EXPECT_EQ(shown, frame) << part->objectName().toStdString();
            return;
        }
        EXPECT_EQ(shown.left(), frame.left());
        EXPECT_EQ(shown.width(), frame.width());
        EXPECT_NEAR(shown.center().y(), frame.center().y(), 1);
    }

    [[nodiscard]] ui::Card* noteCard() const
    {
        return testing::PageWindow::find<ui::Card>(*page, "healthNotes");
    }
};

TEST_F(HealthPageTest, EachRowStandsInItsPlace)
{
    breakEverything();
    open();
    controller->refreshHealthStatus();
    int y = 172;
    for (const QString& key : keyNames) {
        expectFrame(title(key), QRect(18, y + 4, 84, 22));
        expectFrame(label(key), QRect(112, y + 4, 268, 22));
        EXPECT_EQ(rowFrameOf(button(key)), QRect(390, y, 122, 28));
        y -= 40;
    }
}

TEST_F(HealthPageTest, BeforeTheFirstLookEachRowIsBeingChecked)
{
    build();
    for (const QString& key : keyNames) {
        EXPECT_EQ(label(key)->fullText(), u"检测中…"_s);
        EXPECT_EQ(label(key)->toolTip(), u"检测中…"_s);
        EXPECT_FALSE(button(key)->isVisibleTo(&*page));
    }
}

TEST_F(HealthPageTest, StatusesHaveTheirColoursAndTheirTextAsToolTip)
{
    preferences.setValue(keys::cloudAccessToken, u"access"_s);
    permissions.microphone = AuthorizationStatus::Denied;
    open();
    controller->refreshHealthStatus();
    const auto color = [this](const QString& key) {
        return label(key)->palette().color(QPalette::WindowText).name();
    };
    EXPECT_EQ(color(u"accessibility"_s), "#0d57b3");
    EXPECT_EQ(color(u"microphone"_s), "#a65600");
    EXPECT_EQ(color(u"api"_s), "#4a30b8");
    EXPECT_EQ(color(u"delivery"_s), "#6a675e");
    EXPECT_EQ(label(u"microphone"_s)->toolTip(), u"⚠ Disabled — cannot capture audio"_s);
}

TEST_F(HealthPageTest, OnlyARowWithAProblemHasItsButton)
{
    preferences.setValue(keys::cloudAccessToken, u"access"_s);
    permissions.microphone = AuthorizationStatus::Denied;
    open();
    controller->refreshHealthStatus();
    for (const QString& key : keyNames)
        EXPECT_EQ(button(key)->isVisibleTo(&*page), key == u"microphone"_s) << key.toStdString();
    EXPECT_EQ(page->firstControl(), button(u"microphone"_s));

    permissions.microphone = AuthorizationStatus::Authorized;
    controller->refreshHealthStatus();
    EXPECT_FALSE(button(u"microphone"_s)->isVisibleTo(&*page));
    EXPECT_EQ(page->firstControl(), nullptr);
}

TEST_F(HealthPageTest, EachButtonDoesWhatItsRowNeeds)
{
    breakEverything();
    open();
    controller->refreshHealthStatus();
    button(u"api"_s)->click();
    button(u"delivery"_s)->click();
    EXPECT_EQ(trace, (QStringList{"sign in", "history"}));
    button(u"microphone"_s)->click();
    button(u"speech"_s)->click();
    time.advance(0s);
    EXPECT_EQ(permissions.microphoneRequests, 1);
    EXPECT_EQ(permissions.speechRequests, 1);
    button(u"accessibility"_s)->click();
    EXPECT_EQ(workspace.openedSettings, QList{SettingsPane::Accessibility});
}

TEST_F(HealthPageTest, ButtonsOfTheSameTitleHaveNamesOfTheirOwn)
{
    breakEverything();
    open();
    EXPECT_EQ(button(u"accessibility"_s)->text(), "Enable");
    EXPECT_EQ(button(u"accessibility"_s)->accessibleName(), "Accessibility: Enable");
    EXPECT_EQ(button(u"microphone"_s)->accessibleName(), "Microphone: Enable");
}

TEST_F(HealthPageTest, TheTabKeyGoesFromButtonToButton)
{
    breakEverything();
    open();
    controller->refreshHealthStatus();
    button(u"accessibility"_s)->setFocus();
    for (const QString& key : keyNames) {
        EXPECT_EQ(QApplication::focusWidget(), button(key)) << key.toStdString();
        testing::PageWindow::press(Qt::Key_Tab);
    }
}

TEST_F(HealthPageTest, InSightThePageLooksAgainByItself)
{
    open();
    page->pageShown();
    EXPECT_EQ(
        label(u"accessibility"_s)->fullText(), u"✓ Allowed — can insert at the current cursor"_s);
    accessibility.trusted = false;
    time.advance(3s);
    EXPECT_TRUE(button(u"accessibility"_s)->isVisibleTo(&*page));
    page->pageHidden();
    EXPECT_EQ(time.pending(), 0U);
}

TEST_F(HealthPageTest, WithoutNotesTheTimeStandsBelowTheRows)
{
    open();
    controller->refreshHealthStatus();
    EXPECT_EQ(noteCard(), nullptr);
    const auto* const updated = testing::PageWindow::find<ui::Label>(*page, "healthUpdatedLabel");
    EXPECT_TRUE(updated->fullText().startsWith(u"检测于 "_s));
    EXPECT_EQ(frameOf(updated), QRect(36, 304 - 12 - 18, 538, 18));
}

TEST_F(HealthPageTest, TheRecogniserHasACardBelowTheRows)
{
    texts = linuxTexts();
    open();
    controller->refreshHealthStatus();
    ASSERT_NE(noteCard(), nullptr);
    EXPECT_EQ(frameOf(noteCard()), QRect(36, 290 - 52, 538, 52));
    const auto* const updated = testing::PageWindow::find<ui::Label>(*page, "healthUpdatedLabel");
    EXPECT_EQ(frameOf(updated), QRect(36, 238 - 12 - 18, 538, 18));
    EXPECT_TRUE(testing::PageWindow::labels(*page).contains(u"✓ Recogniser, language: Mandarin"_s));
}

TEST_F(HealthPageTest, TheCardGrowsWithWhatIsWrong)
{
    texts = linuxTexts();
    recognizer.available = false;
    recognizer.availabilityText = LocalizedText{u"…", u"…",
        u"No speech model is installed. Install the package pocketsphinx-en-us, or name the folder "
        u"of a Sphinx model."};
    open();
    controller->refreshHealthStatus();
    EXPECT_EQ(frameOf(noteCard()), QRect(36, 290 - 60, 538, 60));

    devices.device(1).silent = true;
    probe.heldByOthers.append({key_codes::space, KeyModifier::Option});
    controller->refreshHealthStatus();
    const QRect frame = frameOf(noteCard());
    EXPECT_EQ(frame.top() + frame.height(), 290); // QRect's top is the lower edge here.
    EXPECT_GE(frame.height(), 60 + 2 * 52);
    EXPECT_GE(frame.top(), 12 + 18);

    testing::PageWindow::button(*page, u"Change"_s)->click();
    EXPECT_EQ(trace, QStringList{"shortcuts"});
    testing::PageWindow::button(*page, u"Sound settings"_s)->click();
    EXPECT_EQ(workspace.openedSettings, QList{SettingsPane::Microphone});

    recognizer.available = true;
    devices.device(1).silent = false;
    probe.heldByOthers.clear();
    controller->refreshHealthStatus();
    EXPECT_EQ(frameOf(noteCard()), QRect(36, 290 - 52, 538, 52));
}

TEST_F(HealthPageTest, HoweverMuchIsWrongTheTimeStaysOnThePage)
{
    open();
    HealthContent content = controller->content();
    const HealthNote longest{u"Shortcuts"_s,
        u"Another program holds Alt+Space, which is what begins a translation here. "_s.repeated(3),
        HealthColor::Problem, HealthNoteAction::ChangeShortcuts, u"Change"_s};
    content.notes = QList<HealthNote>(5, longest);
    page->setContent(content);

    const auto* const updated = page->findChild<ui::Label*>(u"healthUpdatedLabel"_s);
    EXPECT_GE(frameOf(updated).top(), 4); // The lower edge.
    EXPECT_LE(frameOf(updated).top() + 18 + 12, frameOf(noteCard()).top());
    for (const auto* const text : noteCard()->findChildren<ui::Label*>()) {
        EXPECT_LE(text->lineCount() * 17, text->height());
        EXPECT_EQ(text->lineCount(), text->fullText() == longest.text ? 2 : 1);
    }
}

TEST_F(HealthPageTest, ACardThatStaysTheSameIsNotDrawnAnew)
{
    texts = linuxTexts();
    devices.device(1).silent = true;
    open();
    controller->refreshHealthStatus();
    const QWidget* const before = noteCard();
    time.advance(3s);
    controller->refreshHealthStatus();
    EXPECT_EQ(noteCard(), before); // A button in it would lose the keyboard.
}

TEST_F(HealthPageTest, AReasonOfAnyLengthStaysInItsRow)
{
    preferences.setValue(keys::lastDeliveryVerified, false);
    preferences.setValue(keys::lastDeliveryReason, u"<b>x</b>"_s + QString(10'000, u'W'));
    open();
    controller->refreshHealthStatus();
    const ui::Label* const status = label(u"delivery"_s);
    EXPECT_EQ(status->textFormat(), Qt::PlainText);
    EXPECT_LE(status->lineCount(), 2);
    EXPECT_LE(rowFrameOf(status).height(), 36);
    EXPECT_TRUE(status->toolTip().contains(u"&lt;b&gt;"_s));
}

TEST_F(HealthPageTest, EverythingFitsInEachLanguage)
{
    texts = linuxTexts();
    for (const QString& language : languages) {
        setLanguage(language);
        breakEverything();
        devices.device(1).silent = true;
        probe.heldByOthers = {{key_codes::space, KeyModifier::Option}};
        probe.holderName = u"Xfwm4"_s;
        open();
        controller->refreshHealthStatus();
        for (const ui::Label* const each : page->findChildren<ui::Label*>()) {
            const bool isStatus = each->objectName().startsWith(u"healthLabel."_s);
            if (each->isVisibleTo(&*page) && !isStatus) {
                EXPECT_EQ(each->toolTip(), QString()) << each->fullText().toStdString();
            }
        }
        for (const QString& key : keyNames)
            EXPECT_LE(label(key)->lineCount(), 2) << key.toStdString();
    }
}

} // namespace
} // namespace tavrin
