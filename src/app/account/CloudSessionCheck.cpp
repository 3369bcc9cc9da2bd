#include "app/account/CloudSessionCheck.h"

#include "app/windows/AccountPanel.h"
#include "cloud/StoredSession.h"
#include "cloud/TavrinAPI.h"
#include "platform/MainQueue.h"

namespace tavrin {
namespace {

constexpr int unauthorized = 401;
constexpr int forbidden = 403;

} // namespace

CloudSessionCheck::CloudSessionCheck(const Neighbours& neighbours)
    : m_neighbours(neighbours)
{
}

void CloudSessionCheck::validateStoredSession()
{
    if (!hasCloudSession(m_neighbours.preferences))
        return;
    m_neighbours.api.validateCloudSessionWithCompletion(onMainQueue(m_neighbours.mainQueue,
        m_guard.bind([this](const std::optional<Error>& error) { handle(error); })));
}

void CloudSessionCheck::handle(const std::optional<Error>& error)
{
    // Any other failure, of the network for example, says nothing about the session.
    if (error && (error->code == unauthorized || error->code == forbidden))
        clearCloudSession(m_neighbours.preferences);
    m_neighbours.accountPanel.refreshAccountUI();
}

} // namespace tavrin
