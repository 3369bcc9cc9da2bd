#pragma once

#include "base/Seconds.h"
#include "platform/linux/speech/engine/SpeechEngineThread.h"

#include <QString>
#include <QStringList>

#include <memory>

namespace tavrin::bench {

/// What something costs; processor time is what stays comparable on a busy machine.
struct Cost {
    Seconds wall{0};
    Seconds processor{0};
};

struct Understood {
    QString text;
    Cost cost;
};

/// The program's own recogniser with its built-in engine, opened once.
class OwnRecognizer {
public:
    /// Returns when the model is loaded.
    OwnRecognizer();

    [[nodiscard]] Understood recognize(const QString& path, const QStringList& terms);

    [[nodiscard]] Seconds loadingTime() const { return m_loadingTime; }

    [[nodiscard]] std::shared_ptr<SpeechEngineThread> thread() const { return m_thread; }

private:
    Seconds m_loadingTime{0};
    std::shared_ptr<SpeechEngineThread> m_thread;
};

/// `pocketsphinx_continuous -infile` on a WAV file; the time includes its start and its loading.
[[nodiscard]] Understood recognizeWithPeer(const QString& path);

/// The processor time of this process so far, or of the programs that it ran.
[[nodiscard]] Seconds ownProcessorTime();
[[nodiscard]] Seconds peersProcessorTime();

[[nodiscard]] Seconds now();

} // namespace tavrin::bench
