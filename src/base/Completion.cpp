#include "base/Completion.h"

#include <QtGlobal>

#include <atomic>

namespace tavrin {
namespace {

std::atomic<bool> droppingAllowed = false;

} // namespace

void allowDroppedCompletions(bool allowed)
{
    droppingAllowed = allowed;
}

namespace completion_detail {

Promise::~Promise()
{
    Q_ASSERT_X(m_kept || droppingAllowed, "Completion", "dropped without being called");
}

void Promise::keep()
{
    Q_ASSERT_X(!m_kept, "Completion", "called twice");
    m_kept = true;
}

} // namespace completion_detail
} // namespace tavrin
