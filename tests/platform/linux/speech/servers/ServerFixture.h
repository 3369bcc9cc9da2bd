#pragma once

#include "platform/linux/speech/engine/EngineFileRecognizer.h"
#include "platform/linux/speech/servers/SpeechServer.h"
#include "platform/preferences/PreferenceKeys.h"
#include "support/WaitUntil.h"
#include "support/sound/HeardResults.h"
#include "support/sound/Sounds.h"

#include <QCoreApplication>
#include <QEvent>
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace tavrin::testing {

/// Lets an engine that talks to a server of this thread's event loop hear recordings.
class ServerFixture : public ::testing::Test {
protected:
    QTemporaryDir folder;
    HeardResults heard;

    /// Also wakes the event loop, which waits for the outcome.
    [[nodiscard]] SpeechResultHandler handler() const
    {
        return [heard = heard.handler()](Result<SpeechResult> result) {
            heard(std::move(result));
            QCoreApplication::postEvent(QCoreApplication::instance(), new QEvent(QEvent::User));
        };
    }

    /// As it is set up by someone who set nothing but its address.
    static SpeechServer serverAt(const QUrl& url)
    {
        SpeechServer server;
        server.language = keys::linuxSpeechLanguage.fallback;
        server.model = keys::linuxSpeechHttpModel.fallback;
        server.setAddress = url.toString();
        server.address = url;
        return server;
    }

    /// A recording of a tone.
    [[nodiscard]] QString recording(double seconds) const
    {
        QString path = folder.filePath("recording.wav");
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(wavFile(tone(seconds)));
        return path;
    }

    /// The text that came, or the error's domain and code.
    QString recognized(std::unique_ptr<SpeechEngine> engine, const QString& path,
        const SpeechRequest& request = {})
    {
        EngineFileRecognizer recognizer(std::make_shared<SpeechEngineThread>(std::move(engine)));
        const auto task = recognizer.recognize(path, request, handler());
        return waitUntil([this] { return heard.hasOutcome(); }, Seconds{60}) ? heard.text()
                                                                             : "nothing came";
    }
};

} // namespace tavrin::testing
