#include "platform/ProgramInstance.h"
#include "platform/linux/process/SingleInstance.h"
#include "platform/linux/process/TerminationSignals.h"

#include <optional>
#include <utility>

namespace tavrin {
namespace {

class LinuxProgramInstance final : public ProgramInstance {
public:
    [[nodiscard]] bool isFirst() const override { return m_instance.isFirst(); }

    [[nodiscard]] bool activateFirst() const override { return m_instance.activateFirst(); }

    void setActivated(std::function<void()> activated) override
    {
        m_instance.setActivated(std::move(activated));
    }

    void setTerminate(std::function<void()> terminate) override
    {
        m_signals.reset(); // At most one at a time.
        m_signals.emplace(std::move(terminate));
    }

private:
    SingleInstance m_instance;
    std::optional<TerminationSignals> m_signals;
};

} // namespace

std::unique_ptr<ProgramInstance> createProgramInstance()
{
    return std::make_unique<LinuxProgramInstance>();
}

} // namespace tavrin
