// tavrin_bench_cloud URL EMAIL PASSWORD CALLS
//
// Polishes the same text CALLS times through the cloud client and as often with curl, in turns of
// fifty, each on one warm connection. Ends with 1 when the client adds too much.

#include "base/LocalizedText.h"
#include "cloud/TavrinAPI.h"
#include "platform/SystemInfo.h"
#include "platform/preferences/PreferenceKeys.h"
#include "platform/preferences/Preferences.h"
#include "platform/qt/QtHttpTransport.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QHash>
#include <QJsonDocument>
#include <QProcess>

#include <algorithm>
#include <cstdio>
#include <functional>
#include <vector>

using namespace Qt::StringLiterals;
using namespace tavrin;

namespace {

constexpr int callsInTurn = 50;
constexpr double mostOverhead = 1; // In milliseconds, at the median.
const QString transcript =
    u"嗯那个我们明天下午三点开会然后讨论一下预算 then send the report to Ann before Friday"_s;

class BenchPreferences final : public Preferences {
public:
    [[nodiscard]] QVariant value(const QString& key) const override { return m_values.value(key); }

    void setValue(const QString& key, const QVariant& value) override { m_values[key] = value; }

    void remove(const QString& key) override { m_values.remove(key); }

    void synchronize() override { }

private:
    QHash<QString, QVariant> m_values;
};

class BenchSystemInfo final : public SystemInfo {
public:
    [[nodiscard]] QString localizedHostName() const override { return u"bench"_s; }

    [[nodiscard]] QString bundleShortVersion() const override { return {}; }

    [[nodiscard]] QString bundleVersion() const override { return {}; }

    [[nodiscard]] QString temporaryDirectory() const override { return {}; }

    [[nodiscard]] QString applicationSupportDirectory() const override { return {}; }

    [[nodiscard]] QString environmentVariable(const QString&) const override { return {}; }

    [[nodiscard]] QString speechLanguage() const override { return {}; }
};

[[noreturn]] void stop(const QString& reason)
{
    std::fprintf(stderr, "%s\n", qPrintable(reason));
    std::_Exit(2);
}

/// Milliseconds from the call of @p start until it called back.
double measure(const std::function<void(const std::function<void()>&)>& start)
{
    QEventLoop loop;
    QElapsedTimer timer;
    qint64 nanoseconds = 0;
    timer.start();
    start([&] {
        nanoseconds = timer.nsecsElapsed();
        loop.quit();
    });
    loop.exec();
    return static_cast<double>(nanoseconds) / 1e6;
}

double polishOnce(TavrinAPI& api)
{
    return measure([&](const std::function<void()>& done) {
        api.polish(
            transcript, {}, u"professional"_s, u"none"_s, [done](const Result<QString>& text) {
                if (!text)
                    stop(text.error().message);
                done();
            });
    });
}

/// The same call, @p count times over one connection of curl; how long each took.
std::vector<double> polishByCurl(const QString& url, const QString& token, int count)
{
    const QByteArray body = QJsonDocument(
        QJsonObject{{u"transcript"_s, transcript}, {u"application"_s, QJsonObject{}},
            {u"style"_s, u"professional"_s},
            {u"translation"_s,
                u"none"_s}}).toJson(QJsonDocument::Compact);
    QByteArray escaped = body;
    escaped.replace('\\', "\\\\").replace('"', "\\\"");
    const QByteArray transfer = "url = \"" + url.toUtf8() + "/v1/text/polish\"\n"
        + "header = \"Content-Type: application/json\"\n" + "header = \"Authorization: Bearer "
        + token.toUtf8() + "\"\n" + "data-binary = \"" + escaped
        + "\"\noutput = /dev/null\nfail\nwrite-out = \"%{time_total}\\n\"\n";
    QByteArrayList transfers;
    for (int i = 0; i < count; ++i)
        transfers.append(transfer);

    QProcess curl;
    curl.start(u"curl"_s, {u"--silent"_s, u"--config"_s, u"-"_s});
    curl.write(transfers.join("next\n"));
    curl.closeWriteChannel();
    if (!curl.waitForFinished(-1) || curl.exitCode() != 0)
        stop(u"curl failed"_s);
    std::vector<double> times;
    for (const QByteArray& line : curl.readAllStandardOutput().split('\n')) {
        if (!line.isEmpty())
            times.push_back(line.toDouble() * 1000);
    }
    return times;
}

double percentile(std::vector<double> values, double share)
{
    std::ranges::sort(values);
    return values.at(static_cast<std::size_t>(share * static_cast<double>(values.size() - 1)));
}

void append(std::vector<double>& all, const std::vector<double>& turn)
{
    all.insert(all.end(), turn.begin() + 1, turn.end()); // The first one opened the connection.
}

} // namespace

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() != 5)
        stop(u"usage: tavrin_bench_cloud URL EMAIL PASSWORD CALLS"_s);
    const QString url = arguments[1];

    BenchPreferences preferences;
    BenchSystemInfo systemInfo;
    QtHttpTransport transport;
    TavrinAPI api(transport, preferences, systemInfo,
        CloudSettings{[](const LocalizedText& text) { return text.en.toString(); },
            [] { return u"english"_s; }, url});
    measure([&](const std::function<void()>& done) {
        api.loginEmail(arguments[2], arguments[3], [done](const CloudResponse& response) {
            if (response.error)
                stop(response.error->message);
            done();
        });
    });
    const QString token = preferences.value(keys::cloudAccessToken).toString();

    std::vector<double> client;
    std::vector<double> peer;
    for (int left = arguments[4].toInt(); left > 0; left -= callsInTurn) {
        std::vector<double> turn;
        for (int i = 0; i <= callsInTurn; ++i)
            turn.push_back(polishOnce(api));
        append(client, turn);
        append(peer, polishByCurl(url, token, callsInTurn + 1));
    }

    const double overhead = percentile(client, 0.5) - percentile(peer, 0.5);
    std::printf("polish, warm connection, %zu calls each (ms)\n", client.size());
    std::printf("  %-18s p50 %6.3f   p95 %6.3f\n", "cloud client", percentile(client, 0.5),
        percentile(client, 0.95));
    std::printf("  %-18s p50 %6.3f   p95 %6.3f\n", "curl, keep-alive", percentile(peer, 0.5),
        percentile(peer, 0.95));
    std::printf("  %-18s p50 %6.3f   limit %.0f\n", "overhead", overhead, mostOverhead);
    return overhead < mostOverhead ? 0 : 1;
}
