#include "Stage.h"

#include "Peer.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QUuid>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace bench {
namespace {

constexpr double oldest = 29.5; // Days: all of them live under the default setting.

QByteArray generate(int records, double time)
{
    QJsonArray history;
    for (int i = 0; i < records; ++i) {
        const tavrin::NewHistoryRecord one = result(i);
        history.append(QJsonObject{
            {u"id"_s, QUuid::createUuid().toString(QUuid::WithoutBraces).toUpper()},
            {u"timestamp"_s, time - (i + 1) * oldest * 86400 / records},
            {u"transcript"_s, one.transcript}, {u"finalText"_s, one.finalText},
            {u"delivery"_s, one.delivery}, {u"mode"_s, one.mode},
            {u"inputCharacters"_s, one.transcript.size()},
            {u"outputCharacters"_s, one.finalText.size()}, {u"audioSeconds"_s, one.audio.count()},
            {u"processingSeconds"_s, one.processing.count()},
            {u"application"_s, QJsonObject::fromVariantMap(one.application)}});
    }
    return QJsonDocument(history).toJson(QJsonDocument::Indented);
}

} // namespace

void CountingQueue::run(Task work, Task done)
{
    ++m_running;
    m_queue.run(std::move(work), [this, done = std::move(done)] {
        --m_running;
        done();
    });
}

Stage::Stage(int records)
    : m_systemInfo(m_folder.path())
    , m_queue(m_mainQueue)
{
    m_generated = generate(records, m_clock.sinceEpoch().count());
    QDir().mkpath(m_folder.filePath(u"Tavrin"_s));
    reset();
}

QString Stage::path() const
{
    return m_folder.filePath(u"Tavrin/TranscriptionHistory.json"_s);
}

QByteArray Stage::content() const
{
    QFile file(path());
    if (!file.open(QIODevice::ReadOnly))
        stop("the history cannot be read");
    return file.readAll();
}

void Stage::restart()
{
    m_store = std::make_unique<tavrin::HistoryStore>(
        tavrin::HistoryStore::Ports{m_preferences, m_clock, m_systemInfo, m_queue});
}

void Stage::reset()
{
    static_cast<void>(rewrite(path(), m_generated));
    restart();
}

void Stage::awaitWritten()
{
    while (!m_queue.isIdle())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
}

double Stage::longestBlocking(const std::function<void()>& work)
{
    double longest = 0;
    double last = 0;
    const auto beat = [&] { longest = std::max(longest, now() - std::exchange(last, now())); };
    last = now();
    const auto heart = m_mainQueue.every(tavrin::Seconds(0.001), beat);
    m_mainQueue.post(work);
    QCoreApplication::processEvents();
    awaitWritten();
    QCoreApplication::processEvents();
    beat();
    return longest;
}

tavrin::NewHistoryRecord result(int index)
{
    const QString spoken =
        u"嗯那个我们第 %1 次讨论一下预算 then send the report to Ann before Friday "_s.arg(index);
    const QString written =
        u"我们第 %1 次讨论一下预算，then send the \"report\" to Ann.\n"_s.arg(index);
    const int sentences = 1 + index % 3;
    return {.transcript = spoken.repeated(sentences),
        .finalText = written.repeated(sentences),
        .delivery = u"自动输入已完成"_s,
        .mode = u"dictation"_s,
        .audio = tavrin::Seconds(4.5 * sentences),
        .processing = tavrin::Seconds(1.25),
        .application = {{u"name"_s, u"Text Editor"_s}, {u"bundleId"_s, u"org.example.editor"_s},
            {u"windowHint"_s, QString()}, {u"focusedRole"_s, u"AXTextArea"_s}}};
}

} // namespace bench
