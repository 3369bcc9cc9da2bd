#include "platform/linux/inputmethod/InputMethods.h"

#include "base/Log.h"
#include "platform/linux/desktop/XdgFolders.h"
#include "platform/linux/inputmethod/Fcitx5.h"
#include "platform/linux/inputmethod/IBus.h"

namespace tavrin {
namespace {

using namespace std::chrono_literals;

// One that is only slow answers within this, also on a busy machine; one that hangs has the program
// in front hang as well.
constexpr auto usualPatience = 1s;

/// Fcitx first: where it runs, it also answers in the place of IBus.
std::vector<std::unique_ptr<InputMethod>> knownInputMethods()
{
    std::vector<std::unique_ptr<InputMethod>> known;
    known.push_back(std::make_unique<Fcitx5>());
    known.push_back(std::make_unique<IBus>());
    return known;
}

} // namespace

InputMethods::InputMethods(const QString& noteFile)
    : InputMethods(knownInputMethods(), noteFile, usualPatience)
{
}

InputMethods::InputMethods(std::vector<std::unique_ptr<InputMethod>> known, const QString& noteFile,
    std::chrono::milliseconds patience)
    : m_known(std::move(known))
    , m_note(noteFile)
    , m_patience(patience)
{
}

Deadline InputMethods::fromNow() const
{
    return std::chrono::steady_clock::now() + m_patience;
}

QString InputMethods::noteFile()
{
    const QString folder = xdg::runtimeFolder();
    QString display = qEnvironmentVariable("DISPLAY");
    display.replace(u'/', u'_');
    return folder.isEmpty() ? QString()
                            : folder + QStringLiteral("/tavrin-input-method-aside") + display;
}

void InputMethods::recover()
{
    const auto left = m_note.leftBehind();
    if (!left)
        return;
    qCInfo(log::platform) << "Switching the input method on that an earlier run had set aside";
    putBack(*left);
    m_note.remove();
}

void InputMethods::endComposition()
{
    static_cast<void>(setAside());
    putBack();
}

bool InputMethods::setAside()
{
    putBack();
    m_inUse = nullptr;
    const Deadline deadline = fromNow();
    for (const auto& method : m_known) {
        const auto engine = method->engine(deadline);
        if (!engine && std::chrono::steady_clock::now() >= deadline)
            return false; // One that does not run answers at once, through the bus.
        if (!engine)
            continue;
        m_inUse = method.get();
        if (method->letsKeysPass(*engine))
            return true;
        m_aside = AsideEngine{method->name(), *engine};
        m_note.write(*m_aside); // First: it may be carried out without an answer.
        if (method->deactivate(deadline))
            return true;
        qCWarning(log::platform) << method->name() << "cannot be set aside:" << *engine;
        return false;
    }
    return true;
}

bool InputMethods::waitForKeys()
{
    return m_inUse && m_inUse->engine(fromNow());
}

void InputMethods::putBack()
{
    if (!m_aside || !putBack(*m_aside))
        return;
    m_aside.reset();
    m_note.remove();
}

bool InputMethods::putBack(const AsideEngine& aside)
{
    const Deadline deadline = fromNow();
    for (const auto& method : m_known) {
        if (method->name() == aside.inputMethod)
            return method->activate(aside.engine, deadline);
    }
    return true; // One of another version of this program.
}

} // namespace tavrin
