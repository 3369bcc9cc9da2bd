#pragma once

#include "platform/Permissions.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

namespace tavrin::testing {

/// Permissions that the test grants. A request is answered at once with the status of the moment,
/// unless `holdsRequests` is set: then the test answers it itself, from any thread it likes.
class InMemoryPermissions final : public Permissions {
public:
    AuthorizationStatus microphone = AuthorizationStatus::Authorized;
    AuthorizationStatus speech = AuthorizationStatus::Authorized;
    bool holdsRequests = false;
    std::vector<Completion<AuthorizationStatus>> heldRequests; ///< Oldest first.
    int microphoneRequests = 0;
    int speechRequests = 0;

    [[nodiscard]] AuthorizationStatus microphoneStatus() const override { return microphone; }

    void requestMicrophone(Completion<AuthorizationStatus> completion) override
    {
        ++microphoneRequests;
        answer(std::move(completion), microphone);
    }

    [[nodiscard]] AuthorizationStatus speechStatus() const override { return speech; }

    void requestSpeech(Completion<AuthorizationStatus> completion) override
    {
        ++speechRequests;
        answer(std::move(completion), speech);
    }

    /// The oldest held request, to be answered.
    [[nodiscard]] Completion<AuthorizationStatus> takeRequest()
    {
        auto request = std::move(heldRequests.front());
        heldRequests.erase(heldRequests.begin());
        return request;
    }

private:
    void answer(Completion<AuthorizationStatus> completion, AuthorizationStatus status)
    {
        if (holdsRequests)
            heldRequests.push_back(std::move(completion));
        else
            completion(status);
    }
};

/// Names the tests that run once for every status.
inline std::string authorizationName(const ::testing::TestParamInfo<AuthorizationStatus>& info)
{
    switch (info.param) {
    case AuthorizationStatus::NotDetermined:
        return "NotDetermined";
    case AuthorizationStatus::Denied:
        return "Denied";
    case AuthorizationStatus::Restricted:
        return "Restricted";
    case AuthorizationStatus::Authorized:
        return "Authorized";
    }
    return "Unknown";
}

} // namespace tavrin::testing
