#pragma once

#include "platform/linux/audio/PrivatePipeWire.h"
#include "platform/linux/audio/PrivatePulseAudio.h"
#include "platform/linux/audio/SoundServerFixture.h"

namespace tavrin::testing {

using MakeServer = std::unique_ptr<PrivateSoundServer> (*)();

template <class Server>
std::unique_ptr<PrivateSoundServer> make()
{
    return std::make_unique<Server>();
}

/// What both sound servers must stand, once on each: INSTANTIATE_TEST_SUITE_P(On, …,
/// eitherServer, serverName).
class EitherServer : public SoundServerFixture<::testing::TestWithParam<MakeServer>> {
protected:
    std::unique_ptr<PrivateSoundServer> server = GetParam()();
    std::shared_ptr<PulseConnection> connection = std::make_shared<PulseConnection>();
    PulseAudioDevices devices{connection};
    QString path = folder.filePath("recording.m4a");
    PulseAudioRecorder recorder{connection, path, settings};

    void SetUp() override { ASSERT_TRUE(server->start()); }
};

inline const auto eitherServer = ::testing::Values(make<PrivatePulseAudio>, make<PrivatePipeWire>);

inline std::string serverName(const ::testing::TestParamInfo<MakeServer>& server)
{
    return server.index == 0 ? "PulseAudio" : "PipeWire";
}

} // namespace tavrin::testing
