// Shows the recording panel in each of its states and writes a picture of each.
// usage: tavrin-hud-gallery FOLDER

#include "support/ports/InMemoryWorkspace.h"
#include "ui/hud/HudTexts.h"
#include "ui/hud/HudWidget.h"

#include <QApplication>
#include <QDir>
#include <QPixmap>
#include <QScreen>

#include <cstdio>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace tavrin {
namespace {

struct Picture {
    QString name;
    hud::Content content;
};

QString in(const QString& language, const LocalizedText& text)
{
    const QStringView chosen = language == "en"_L1 ? text.en
        : language == "zh-Hant"_L1                 ? text.zhHant
                                                   : text.zhHans;
    return chosen.toString();
}

hud::Content recording(const QString& language, const QString& transcript)
{
    hud::Content content;
    content.titleLabel = in(language, texts::listeningTranslation);
    content.detailLabel = in(language, texts::pressAgainToFinish).arg(u"Shift+Super+Space"_s);
    content.timeLabel = hud::recordingTime(75.9s);
    content.transcriptLabel =
        transcript.isEmpty() ? in(language, texts::waitingForSpeech) : transcript;
    content.bars = hud::waveBars(300ms, 0.7);
    content.lightX = 90;
    return content;
}

hud::Content processing(const QString& language, bool estimated)
{
    hud::Content content;
    content.dot = hud::Dot::Processing;
    content.titleLabel = in(language, texts::answering);
    content.detailLabel =
        estimated ? texts::estimatedDuration.toString().arg(12) : texts::noEstimate.toString();
    content.transcriptLabel = in(language, texts::translatingDetail);
    content.bars = hud::waveBars(900ms, 1);
    content.lightX = 200;
    content.progressVisible = true;
    content.progressIndeterminate = !estimated;
    content.progress = 46.5;
    if (estimated)
        content.timeLabel = hud::remainingTime(5s, 12s);
    return content;
}

hud::Content cancelPrompt()
{
    hud::Content content;
    content.dot = hud::Dot::Attention;
    content.titleLabel = texts::cancelQuestion.toString();
    content.detailLabel = texts::cancelDetail.toString();
    content.transcriptLabel = texts::cancelHint.toString();
    content.timeLabel = texts::cancelTime.toString();
    content.barsVisible = false;
    content.buttonsVisible = true;
    content.takesMouse = true;
    return content;
}

hud::Content clipboardNotice()
{
    hud::Content content = cancelPrompt();
    content.titleLabel = texts::pasteUnconfirmed.toString();
    content.detailLabel = u"焦点没有回到开始录音时的应用；请按 Ctrl+V"_s;
    content.transcriptLabel = texts::nothingLost.toString();
    content.timeLabel = u"Ctrl+V"_s;
    content.buttonsVisible = false;
    content.takesMouse = false;
    return content;
}

QList<Picture> pictures()
{
    QList<Picture> all{{u"cancel"_s, cancelPrompt()}, {u"clipboard"_s, clipboardNotice()}};
    for (const QString& language : {u"en"_s, u"zh-Hant"_s, u"zh-Hans"_s}) {
        all.append({u"recording-"_s + language, recording(language, {})});
        all.append({u"processing-"_s + language, processing(language, true)});
        all.append({u"unestimated-"_s + language, processing(language, false)});
    }
    const QString speech =
        u"The meeting moves to Thursday at ten, 因为会议室 B 已经被占用了, and everybody who "
        "wants to join from home gets the link by Wednesday evening at the latest"_s;
    all.append({u"live-en"_s, recording(u"en"_s, speech)});
    return all;
}

} // namespace
} // namespace tavrin

int main(int argc, char** argv)
{
    const QApplication application(argc, argv);
    if (argc != 2) {
        std::fputs("usage: tavrin-hud-gallery FOLDER\n", stderr);
        return 2;
    }
    const QString folder = QString::fromLocal8Bit(argv[1]);
    if (!QDir().mkpath(folder)) {
        std::fprintf(stderr, "cannot make the folder %s\n", argv[1]);
        return 1;
    }
    const tavrin::testing::InMemoryWorkspace workspace;
    tavrin::hud::Widget widget(workspace);
    for (const auto& [name, content] : tavrin::pictures()) {
        widget.setContent(content);
        if (!widget.grab().save(folder + u'/' + name + u".png"_s)) {
            std::fprintf(stderr, "cannot write the picture %s\n", qPrintable(name));
            return 1;
        }
    }
    return 0;
}
