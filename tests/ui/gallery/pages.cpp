// Shows every page of the main window in its states and languages and writes a picture of each.
// usage: tavrin-page-gallery FOLDER

#include "platform/keyboard/KeyNames.h"
#include "platform/preferences/PreferenceKeys.h"
#include "platform/qt/MenuBuilder.h"
#include "ui/ProgramStage.h"
#include "ui/alerts/DrawnAlerts.h"

#include <QApplication>
#include <QComboBox>
#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLineEdit>
#include <QMenu>
#include <QPixmap>
#include <QPushButton>
#include <QRadioButton>
#include <QTest>

#include <algorithm>
#include <cstdio>
#include <functional>
#include <optional>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace tavrin {
namespace {

using Stage = testing::ProgramStage;

/// What a scene draws beside the windows of the program.
struct Drawn {
    ui::DrawnAlerts alerts;
    QMenu menu;
};

using FindWindow = std::function<QWidget*(const Stage&, Drawn&)>;

QWidget* mainWindow(const Stage& /*stage*/, Drawn& /*drawn*/)
{
    return Stage::window();
}

struct Scene {
    QString name;
    std::function<void(Stage&)> before; ///< The launch.
    std::function<void(Stage&)> after;
    FindWindow window = mainWindow; ///< What the picture is of.
};

/// The last alert of the program, as it is drawn.
QWidget* drawAlert(const Stage& stage, Drawn& drawn)
{
    if (stage.alerts->shown().isEmpty())
        return nullptr;
    drawn.alerts.show(stage.alerts->shown().last(), [](const AlertAnswer&) {});
    for (QWidget* const window : QApplication::topLevelWidgets()) {
        if (window->isVisible() && window->objectName() == "alert"_L1)
            return window;
    }
    return nullptr;
}

FindWindow windowTitled(const QString& title)
{
    return [title](const Stage& /*stage*/, Drawn& /*drawn*/) -> QWidget* {
        for (QWidget* const window : QApplication::topLevelWidgets()) {
            if (window->isVisible() && window->windowTitle() == title)
                return window;
        }
        return nullptr;
    };
}

/// The status menu, or the one that opens from it first, second …
FindWindow statusMenu(std::optional<int> submenu = {})
{
    return [submenu](const Stage& stage, Drawn& drawn) -> QWidget* {
        QList<MenuItem> items = stage.statusItem->menu;
        if (submenu) {
            items.removeIf([](const MenuItem& item) { return item.children.isEmpty(); });
            items = items.value(*submenu).children;
        }
        updateMenu(drawn.menu, items);
        drawn.menu.popup({0, 0});
        return &drawn.menu;
    };
}

/// The list of a control that was opened.
QWidget* openList(const Stage& /*stage*/, Drawn& /*drawn*/)
{
    return QApplication::activePopupWidget();
}

QJsonObject record(double timestamp, const QString& mode, const QString& text)
{
    return {{u"id"_s, u"R%1"_s.arg(timestamp, 0, 'f', 0)}, {u"timestamp"_s, timestamp},
        {u"mode"_s, mode}, {u"transcript"_s, text.toLower()}, {u"finalText"_s, text},
        {u"inputCharacters"_s, text.size()}, {u"audioSeconds"_s, 14.5},
        {u"processingSeconds"_s, 1.2}, {u"targetLanguage"_s, u"cantonese"_s}};
}

void writeHistory(const Stage& stage, const QJsonArray& records)
{
    const QString folder = stage.folder.path() + u"/Tavrin"_s;
    QDir().mkpath(folder);
    QFile file(folder + u"/TranscriptionHistory.json"_s);
    if (file.open(QIODevice::WriteOnly))
        file.write(QJsonDocument(records).toJson());
}

void addHistory(Stage& stage)
{
    const double now = stage.time.sinceEpoch().count();
    constexpr double hour = 3600;
    QJsonArray records{
        record(now - 600, u"dictation"_s,
            u"Thursday’s review moves to the large room on the third floor at ten. Please share the prototype link and last week’s interview notes beforehand, and tell everybody that the coffee machine is out of order."_s),
        record(now - hour, u"translation"_s, u"唔好意思，我今日會遲十五分鐘到，你哋開始先啦。"_s),
        record(now - 24 * hour, u"chat"_s,
            u"Summarise the budget by quarter first, then compare the departments in a pivot table."_s),
        record(now - 25 * hour, u"dictation"_s, u"<b>Not bold</b> & مرحبا بالعالم"_s),
    };
    for (int i = 0; i < 124; ++i)
        records.append(record(now - (50 + i) * hour, u"dictation"_s,
            u"我们的计划不会因此受到影响，第%1次会议照常进行。"_s.arg(i + 1)));
    writeHistory(stage, records);
}

void addTerms(Stage& stage)
{
    QVariantList entries;
    const auto add = [&](const QString& term, const QString& source) {
        entries.append(QVariantMap{{u"id"_s, u"T%1"_s.arg(entries.size())}, {u"term"_s, term},
            {u"source"_s, source}, {u"enabled"_s, true}, {u"hits"_s, 1}});
    };
    add(u"Tavrin"_s, u"manual"_s);
    add(u"Ostrander & Søn"_s, u"auto"_s);
    add(u"张晓鸥"_s, u"manual"_s);
    add(u"Kowalczyk"_s, u"auto"_s);
    add(u"Quarterly Operations and Procurement Steering Committee of the Northern Region"_s,
        u"manual"_s);
    for (int i = 0; i < 30; ++i)
        add(u"Term %1"_s.arg(i), i % 3 == 0 ? u"auto"_s : u"manual"_s);
    stage.preferences->setValue(keys::personalDictionaryEntries, entries);
}

void signOut(Stage& stage)
{
    stage.preferences->remove(keys::cloudAccessToken);
    stage.preferences->remove(keys::cloudAccountEmail);
}

void addMachine(Stage& stage)
{
    stage.devices->addMicrophone(1, u"Built-in Audio Analog Stereo"_s, u"built-in"_s);
    stage.devices->defaultInput = 1;
    static constexpr LocalizedText builtIn{u"内置", u"內建", u"Built-in"};
    RecogniserChoices& offered = stage.recogniserSettings->offered;
    offered.recognisers.append(RecogniserChoice{u"sphinx"_s, builtIn});
    offered.recogniser = u"sphinx"_s;
    offered.languages = {u"en-US"_s, u"zh-CN"_s};
    offered.language = u"en-US"_s;
}

std::function<void(Stage&)> page(SettingsPage which)
{
    return [which](Stage& stage) { stage.select(which); };
}

void type(Stage& stage, const QString& field, const QString& text)
{
    auto* const edit = stage.visibleChild<QLineEdit>(field);
    if (!edit)
        return;
    edit->setText(text);
    Q_EMIT edit->textEdited(text);
    QApplication::processEvents();
    stage.time.advance(1s);
}

/// Presses the page's only primary way on: Return in a field.
void pressReturn(Stage& stage, const QString& field)
{
    if (auto* const edit = stage.visibleChild<QLineEdit>(field))
        QTest::keyClick(edit, Qt::Key_Return);
    stage.time.advance(1s);
    QApplication::processEvents();
}

void goToRegistration(Stage& stage)
{
    for (QRadioButton* const segment : stage.children<QRadioButton>()) {
        if (segment->isVisible() && !segment->isChecked()) {
            segment->click();
            break;
        }
    }
    type(stage, u"authEmailField"_s, u"mira.lindqvist@example.com"_s);
    pressReturn(stage, u"authEmailField"_s);
}

QList<Scene> accountScenes()
{
    return {
        {u"account-signed-in"_s, {}, page(SettingsPage::Account)},
        {u"account-start"_s, signOut, {}},
        {u"account-start-error"_s, signOut,
            [](Stage& stage) {
                type(stage, u"authEmailField"_s, u"mira.lindqvist"_s);
                pressReturn(stage, u"authEmailField"_s);
            }},
        {u"account-sign-in"_s, signOut,
            [](Stage& stage) {
                type(stage, u"authEmailField"_s, u"mira.lindqvist@example.com"_s);
                pressReturn(stage, u"authEmailField"_s);
            }},
        {u"account-sign-in-refused"_s, signOut,
            [](Stage& stage) {
                type(stage, u"authEmailField"_s, u"mira.lindqvist@example.com"_s);
                pressReturn(stage, u"authEmailField"_s);
                stage.http->willAnswer(401,
                    R"({"error": {"message": "<b>邮箱或密码不正确</b> The address or the password is not right; after five more attempts this address is locked for an hour."}})");
                pressReturn(stage, u"authPasswordField"_s);
            }},
        {u"account-invite"_s, signOut, goToRegistration},
        {u"account-verification"_s, signOut,
            [](Stage& stage) {
                goToRegistration(stage);
                stage.http->willAnswer(200, "{}");
                pressReturn(stage, u"authInviteField"_s);
            }},
    };
}

/// Presses the first visible button of one of these titles.
void press(const Stage& stage, const QStringList& titles)
{
    for (QAbstractButton* const button : stage.children<QAbstractButton>()) {
        if (button->isVisible() && titles.contains(button->text())) {
            button->click();
            return;
        }
    }
}

QList<Scene> alertScenes()
{
    return {
        {u"alert-clear"_s, addHistory,
            [](Stage& stage) {
                stage.select(SettingsPage::History);
                press(stage, {u"Clear"_s, u"清空"_s});
            },
            drawAlert},
        {u"alert-edit"_s, addTerms,
            [](Stage& stage) {
                stage.select(SettingsPage::Dictionary);
                press(stage, {u"Edit"_s, u"编辑"_s, u"編輯"_s});
            },
            drawAlert},
        {u"alert-welcome"_s,
            [](Stage& stage) { stage.preferences->remove(keys::tavrinBetaOnboardingSeen); },
            [](Stage& stage) { stage.settle(1s); }, drawAlert},
        {u"alert-long"_s, {},
            [](Stage& stage) {
                stage.alerts->show(
                    {Alert::Style::Warning,
                        u"服务器 answered with <b>something</b> that nobody foresaw"_s,
                        u"https://example.com/a-very-long-address-without-any-place-to-break-it?with=parameters&and=more\n\n"_s
                            .repeated(12),
                        {u"OK"_s}, {}},
                    [](const AlertAnswer&) {});
            },
            drawAlert},
        {u"alert-buttons"_s, {},
            [](Stage& stage) {
                stage.alerts->show(
                    {Alert::Style::Informational, u"Two fields & three buttons"_s,
                        u"Labels stand above what they name."_s,
                        {u"Save & test now"_s, u"Later"_s, u"Do not ask again"_s},
                        {{u"API Key"_s, {}, u"sk-…"_s, true}, {u"Model"_s, u"gpt"_s, {}, false}}},
                    [](const AlertAnswer&) {});
            },
            drawAlert},
    };
}

QList<Scene> menuScenes()
{
    constexpr int style = 0;
    constexpr int target = 1;
    return {
        {u"menu"_s, {}, {}, statusMenu()},
        {u"menu-recording"_s, {},
            [](Stage& stage) {
                const auto dictation = std::ranges::find_if(stage.statusItem->menu,
                    [](const MenuItem& item) { return static_cast<bool>(item.action); });
                dictation->action();
                stage.settle(1s);
            },
            statusMenu()},
        {u"menu-style"_s, {}, {}, statusMenu(style)},
        {u"menu-target"_s, {}, {}, statusMenu(target)},
        {u"list-target"_s, {},
            [](Stage& stage) {
                stage.select(SettingsPage::InputAndOutput);
                if (auto* const popup = stage.visibleChild<QComboBox>(u"translationPopup"_s))
                    popup->showPopup();
            },
            openList},
    };
}

QList<Scene> scenes()
{
    return QList<Scene>{
               {u"overview"_s, addHistory, page(SettingsPage::Overview)},
               {u"overview-empty"_s, {}, page(SettingsPage::Overview)},
               {u"overview-limited"_s,
                   [](Stage& stage) {
                       addHistory(stage);
                       stage.workspace->everyProgramReached = false;
                   },
                   page(SettingsPage::Overview)},
               {u"history"_s, addHistory, page(SettingsPage::History)},
               {u"history-find"_s, addHistory,
                   [](Stage& stage) {
                       stage.select(SettingsPage::History);
                       QTest::keyClick(stage.window(), Qt::Key_F, Qt::ControlModifier);
                       QApplication::processEvents();
                       type(stage, u"historySearchField"_s, u"会议"_s);
                   }},
               {u"history-open"_s, addHistory,
                   [](Stage& stage) {
                       stage.select(SettingsPage::History);
                       press(stage, {u"Show the whole text"_s, u"展开全文"_s, u"展開全文"_s});
                   }},
               {u"history-empty"_s, {}, page(SettingsPage::History)},
               {u"dictionary"_s, addTerms, page(SettingsPage::Dictionary)},
               {u"dictionary-empty"_s, {}, page(SettingsPage::Dictionary)},
               {u"dictionary-no-match"_s, addTerms,
                   [](Stage& stage) {
                       stage.select(SettingsPage::Dictionary);
                       type(stage, u"dictionarySearchField"_s, u"zzz"_s);
                   }},
               {u"general"_s, addMachine, page(SettingsPage::General)},
               {u"input-output"_s, {}, page(SettingsPage::InputAndOutput)},
               {u"input-output-conflict"_s,
                   [](Stage& stage) {
                       stage.probe->heldByOthers = {{key_codes::space, KeyModifier::Option}};
                   },
                   page(SettingsPage::InputAndOutput)},
               {u"permissions"_s, {}, page(SettingsPage::Permissions)},
               {u"permissions-no-model"_s,
                   [](Stage& stage) {
                       stage.recognizer->available = false;
                       stage.recognizer->availabilityText = LocalizedText{
                           u"没有语音模型", u"沒有語音模型", u"There is no speech model"};
                       stage.probe->heldByOthers = {{key_codes::space, KeyModifier::Option}};
                       stage.workspace->everyProgramReached = false;
                   },
                   page(SettingsPage::Permissions)},
               {u"permissions-problems"_s,
                   [](Stage& stage) {
                       stage.accessibility->trusted = false;
                       stage.permissions->microphone = AuthorizationStatus::Denied;
                       stage.preferences->setValue(keys::lastDeliveryVerified, false);
                       stage.preferences->setValue(
                           keys::lastDeliveryReason, u"目标应用没有接受粘贴"_s);
                   },
                   page(SettingsPage::Permissions)},
               {u"personalization"_s, {},
                   [](Stage& stage) {
                       const QString language =
                           stage.preferences->value(keys::interfaceLanguage).toString();
                       stage.statusItem->press(language == "en"_L1 ? u"Writing style settings…"_s
                               : language == "zh-Hant"_L1          ? u"寫作風格設定…"_s
                                                                   : u"写作风格设置…"_s);
                   },
                   windowTitled(u"Tavrin 写作风格"_s)},
           }
    + accountScenes() + alertScenes() + menuScenes();
}

bool show(const Scene& scene, const QString& language, const QDir& folder)
{
    Stage stage;
    stage.preferences->setValue(keys::interfaceLanguage, language);
    if (scene.before)
        scene.before(stage);
    const QFont font = QApplication::font();
    stage.launch();
    if (scene.after)
        scene.after(stage);
    QApplication::processEvents();
    const QString path = folder.filePath(u"%1-%2.png"_s.arg(scene.name, language));
    Drawn drawn;
    QWidget* const window = scene.window(stage, drawn);
    const bool saved = window && window->grab().save(path);
    QApplication::setFont(font);
    if (!saved)
        std::fprintf(stderr, "cannot write %s\n", qPrintable(path));
    return saved;
}

} // namespace
} // namespace tavrin

int main(int argc, char** argv)
{
    const QApplication application(argc, argv);
    const QStringList arguments = QApplication::arguments();
    if (arguments.size() < 2 || !QDir().mkpath(arguments[1])) {
        std::fprintf(stderr, "usage: tavrin-page-gallery FOLDER [SCENE]\n");
        return EXIT_FAILURE;
    }
    bool all = true;
    for (const tavrin::Scene& scene : tavrin::scenes()) {
        if (arguments.size() > 2 && !scene.name.startsWith(arguments[2]))
            continue;
        for (const QString& language : {u"en"_s, u"zh-Hans"_s, u"zh-Hant"_s})
            all = tavrin::show(scene, language, QDir(arguments[1])) && all;
    }
    return all ? EXIT_SUCCESS : EXIT_FAILURE;
}
