#pragma once

#include "platform/audio/SoundPlayer.h"
#include "support/ports/Note.h"

#include <QString>
#include <QStringList>

#include <utility>

namespace tavrin::testing {

/// Plays into a list: "load start", "start: stop", "start: at 0", "start: volume 0.55",
/// "start: play".
class InMemorySoundPlayer final : public SoundPlayer {
public:
    /// @param note is told of "sound start" when that one is played.
    explicit InMemorySoundPlayer(Note note = {})
        : m_note(std::move(note))
    {
    }

    QStringList installed{QStringLiteral("start"), QStringLiteral("stop"),
        QStringLiteral("success"), QStringLiteral("error"), QStringLiteral("cancel")};
    QStringList calls;

    [[nodiscard]] std::unique_ptr<Sound> soundNamed(const QString& name) override
    {
        calls.append(QStringLiteral("load ") + name);
        return installed.contains(name) ? std::make_unique<ListedSound>(name, *this) : nullptr;
    }

    /// The names of the sounds that were played, in order.
    [[nodiscard]] QStringList played() const
    {
        QStringList names;
        for (const QString& call : calls) {
            if (call.endsWith(QStringLiteral(": play")))
                names.append(call.section(QLatin1Char(':'), 0, 0));
        }
        return names;
    }

private:
    class ListedSound final : public Sound {
    public:
        ListedSound(QString name, InMemorySoundPlayer& owner)
            : m_name(std::move(name))
            , m_owner(owner)
        {
        }

        void stop() override { note(QStringLiteral("stop")); }

        void setCurrentTime(Seconds position) override
        {
            note(QStringLiteral("at %1").arg(position.count()));
        }

        void setVolume(float volume) override
        {
            note(QStringLiteral("volume %1").arg(static_cast<double>(volume)));
        }

        void play() override
        {
            note(QStringLiteral("play"));
            tell(m_owner.m_note, QStringLiteral("sound ") + m_name);
        }

    private:
        void note(const QString& call)
        {
            m_owner.calls.append(m_name + QStringLiteral(": ") + call);
        }

        QString m_name;
        InMemorySoundPlayer& m_owner;
    };

    Note m_note;
};

} // namespace tavrin::testing
