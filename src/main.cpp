#include "app/AppDelegate.h"
#include "app/CommandLine.h"
#include "app/health/HealthReport.h"
#include "app/health/HealthVerdicts.h"
#include "app/settings/Localization.h"
#include "app/settings/Settings.h"
#include "base/Log.h"
#include "cloud/TavrinAPI.h"
#include "platform/Platform.h"
#include "platform/ProgramInstance.h"
#include "ui/DesktopInterface.h"
#include "ui/alerts/DrawnAlerts.h"

#include <QApplication>
#include <QFile>
#include <QLoggingCategory>

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <optional>

using namespace tavrin;

namespace {

constexpr int usageError = 2;
constexpr qint64 longestPassword = 4096;

QStringList argumentsOf(int argc, char** argv)
{
    QStringList arguments;
    for (int i = 1; i < argc; ++i)
        arguments.append(QString::fromLocal8Bit(argv[i]));
    return arguments;
}

/// Does what needs no running program. Gives the status to exit with, or nothing to go on.
std::optional<int> answerAtOnce(const CommandLine& commandLine)
{
    switch (commandLine.request) {
    case CommandLine::Request::Run:
    case CommandLine::Request::ShowHealth:
    case CommandLine::Request::SignIn:
        return std::nullopt;
    case CommandLine::Request::ShowHelp:
        std::fputs(qPrintable(commandLineHelp()), stdout);
        return EXIT_SUCCESS;
    case CommandLine::Request::ShowVersion:
        std::puts("Tavrin " TAVRIN_VERSION " (build " TAVRIN_BUILD ")");
        return EXIT_SUCCESS;
    case CommandLine::Request::Refuse:
        std::fprintf(stderr, "tavrin: unknown option %s; tavrin --help shows those that exist.\n",
            qPrintable(commandLine.unknown));
        return usageError;
    }
    Q_UNREACHABLE();
}

void configureLogging(bool verbose)
{
    qSetMessagePattern(QStringLiteral("tavrin: %{type}: %{category}: %{message}"));
    if (verbose)
        QLoggingCategory::setFilterRules(QStringLiteral("tavrin.*=true"));
}

int run(ProgramInstance& instance)
{
    Platform platform = createPlatform(std::make_unique<ui::DrawnAlerts>());
    AppDelegate delegate({
        .platform = &platform,
        .createUserInterface = createDesktopInterface,
        // Not quit(): that asks every window first, and a window must not refuse.
        .terminate = [] { QApplication::exit(); },
    });
    const QObject whileItLives; // Goes before the controller, and the connection with it.
    platform.mainQueue->post([&] {
        instance.setTerminate([&delegate] { delegate.quit(); });
        delegate.applicationDidFinishLaunching();
        // Not before there is a window: another start may have asked already.
        instance.setActivated([&delegate] { delegate.showMainWindow(); });
        QObject::connect(qApp, &QGuiApplication::applicationStateChanged, &whileItLives,
            [&delegate](Qt::ApplicationState state) {
                if (state == Qt::ApplicationActive)
                    delegate.applicationDidBecomeActive();
            });
    });
    const int status = QApplication::exec();
    instance.setActivated([] {}); // The controller goes before the instance.
    delegate.applicationWillTerminate();
    return status;
}

/// Signs in to @p email and keeps the session for the program, whether it runs or not.
int signIn(const QString& email)
{
    QFile input;
    QString password;
    if (input.open(stdin, QIODevice::ReadOnly))
        password = QString::fromUtf8(input.readLine(longestPassword)).remove(u'\n');
    const MachinePorts machine = createMachinePorts();
    TavrinAPI api(
        *machine.httpTransport, *machine.preferences, *machine.systemInfo, CloudSettings());
    int status = EXIT_FAILURE;
    machine.mainQueue->post([&] {
        api.loginEmail(email, password, [&status](const CloudResponse& answer) {
            if (answer.error)
                std::fprintf(stderr, "tavrin: %s\n", qPrintable(answer.error->message));
            else
                status = EXIT_SUCCESS;
            QCoreApplication::quit();
        });
    });
    QCoreApplication::exec();
    return status;
}

/// Prints how the program would fare on this desktop.
int showHealth()
{
    const HealthPorts ports = createHealthPorts();
    const Localization localization(
        *ports.preferences, *ports.workspace, ports.keyNames, ports.texts);
    Settings settings(*ports.preferences, localization, ports.hotKeyProbe.get());
    const HealthVerdicts check({*ports.accessibility, *ports.audioDevices, *ports.clock,
        *ports.hotKeyProbe, localization, *ports.permissions, *ports.preferences,
        *ports.fileSpeechRecognizer, settings, *ports.systemInfo, *ports.workspace});
    int status = EXIT_FAILURE;
    const auto tell = [&] {
        const HealthContent content = check.read();
        std::fputs(healthReport(content).toLocal8Bit().constData(), stdout);
        status = isAllWell(content) ? EXIT_SUCCESS : EXIT_FAILURE;
        QCoreApplication::quit();
    };
    // The accessibility bus may have to be started first, which takes longer than one question.
    constexpr int mostLooks = 20;
    int looks = 0;
    const auto timer = ports.mainQueue->every(Seconds(0.1), [&] {
        if (ports.accessibility->isProcessTrusted() || ++looks == mostLooks)
            tell();
    });
    QCoreApplication::exec();
    return status;
}

} // namespace

int main(int argc, char** argv)
{
    const CommandLine commandLine = parseCommandLine(argumentsOf(argc, argv));
    if (const auto status = answerAtOnce(commandLine))
        return *status;
    configureLogging(commandLine.verbose);

    QCoreApplication::setApplicationName(QStringLiteral("Tavrin"));
    if (commandLine.request == CommandLine::Request::SignIn) {
        const QCoreApplication application(argc, argv);
        return signIn(commandLine.email);
    }

    // On Linux, GLib's main loop would steal the replies that the accessibility library waits for
    // on its own thread.
    qputenv("QT_NO_GLIB", "1");
    if (commandLine.request == CommandLine::Request::ShowHealth) {
        const QCoreApplication application(argc, argv);
        return showHealth();
    }

    QApplication::setDesktopFileName(QStringLiteral("tavrin"));
    const QApplication application(argc, argv);
    qunsetenv("QT_NO_GLIB"); // It is not for the programs that this one opens.
    QApplication::setQuitOnLastWindowClosed(
        AppDelegate::applicationShouldTerminateAfterLastWindowClosed());

    const auto instance = createProgramInstance();
    if (instance->isFirst())
        return run(*instance);
    if (instance->activateFirst())
        return EXIT_SUCCESS;
    qCCritical(log::app) << "Tavrin runs already, but does not answer.";
    return EXIT_FAILURE;
}
