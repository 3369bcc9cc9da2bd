#include "Figures.h"

#include <QCoreApplication>
#include <QTemporaryDir>

#include <cstdio>

/// Prints how well, how fast and how soon speech is understood.
int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    const QTemporaryDir folder;
    std::setvbuf(stdout, nullptr, _IOLBF, 0);
    tavrin::bench::OwnRecognizer own;
    tavrin::bench::printFinalTranscription(own, folder.path());
    tavrin::bench::printTermRecall(own, folder.path());
    tavrin::bench::printLiveText(own, folder.path());
    return 0;
}
