#pragma once

#include <functional>
#include <memory>

namespace tavrin {

/// This process among the others of its session: the program runs once, and ends when it is told
/// to. Main thread only.
class ProgramInstance {
public:
    virtual ~ProgramInstance() = default;

    /// Whether this process is the one that stays. A session that cannot tell has only first ones.
    [[nodiscard]] virtual bool isFirst() const = 0;

    /// Asks the first instance to show itself. False when it does not answer within two seconds.
    [[nodiscard]] virtual bool activateFirst() const = 0;

    /// What to do when another start asks this one to show itself; a request that came before is
    /// answered now.
    virtual void setActivated(std::function<void()> activated) = 0;

    /// What to do when the system or the terminal asks the program to end (Linux: SIGTERM, SIGINT,
    /// SIGHUP). Until this is called, and when it is asked twice, the program ends at once.
    virtual void setTerminate(std::function<void()> terminate) = 0;
};

/// This process on the desktop that this build is for. Called once, when the QApplication exists.
[[nodiscard]] std::unique_ptr<ProgramInstance> createProgramInstance();

} // namespace tavrin
