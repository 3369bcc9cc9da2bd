#include "Figures.h"

#include <QCoreApplication>
#include <QTemporaryDir>

#include <array>
#include <cstdio>

namespace {

using namespace tavrin::bench;

struct Part {
    const char* name;
    void (*print)(OwnRecognizer& own, const QString& folder);
};

constexpr std::array parts{
    Part{"final", printFinalTranscription},
    Part{"terms", printTermRecall},
    Part{"long", printLongRecordings},
    Part{"live", printLiveText},
};

} // namespace

/// Prints how well, how fast and how soon speech is understood: the parts that are named, or all.
int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    const QStringList wanted = QCoreApplication::arguments().mid(1);
    const QTemporaryDir folder;
    std::setvbuf(stdout, nullptr, _IOLBF, 0);
    OwnRecognizer own;
    for (const Part& part : parts) {
        if (wanted.isEmpty() || wanted.contains(QLatin1StringView(part.name)))
            part.print(own, folder.path());
    }
    return 0;
}
