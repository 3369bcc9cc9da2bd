#include "platform/linux/x11/SpareCodes.h"

#include "base/Log.h"
#include "platform/linux/x11/KeySymbols.h"

#include <QFile>

#include <algorithm>

namespace tavrin {
namespace {

constexpr qint64 longestState = 4096;

} // namespace

SpareCodes::SpareCodes(const X11Connection& connection, QString stateFile)
    : m_connection(connection)
    , m_stateFile(std::move(stateFile))
{
}

void SpareCodes::recover()
{
    QFile file(m_stateFile);
    if (m_stateFile.isEmpty() || !file.open(QIODevice::ReadOnly))
        return;
    const KeyboardMap map = KeyboardMap::read(m_connection);
    for (const QByteArray& word : file.read(longestState).split(' ')) {
        bool isNumber = false;
        const int code = word.trimmed().toInt(&isNumber);
        if (isNumber && code >= map.firstCode() && code < map.firstCode() + map.codeCount())
            m_lent.push_back(static_cast<xcb_keycode_t>(code));
    }
    if (!m_lent.empty())
        qCInfo(log::platform) << "Giving back key codes that an earlier run had borrowed";
    restore();
}

std::vector<xcb_keycode_t> SpareCodes::codes(const KeyboardMap& map) const
{
    std::vector<xcb_keycode_t> codes = map.emptyCodes();
    codes.insert(codes.end(), m_lent.begin(), m_lent.end());
    std::sort(codes.begin(), codes.end());
    codes.erase(std::unique(codes.begin(), codes.end()), codes.end());
    return codes;
}

void SpareCodes::assign(const std::vector<CodeAssignment>& assignments)
{
    if (assignments.empty())
        return;
    const auto [first, last] = std::minmax_element(assignments.begin(), assignments.end(),
        [](const auto& one, const auto& other) { return one.code < other.code; });
    auto symbols = KeySymbols::read(m_connection, first->code, last->code);
    if (!symbols)
        return;
    for (const CodeAssignment& assignment : assignments) {
        symbols->assign(assignment);
        if (std::find(m_lent.begin(), m_lent.end(), assignment.code) == m_lent.end())
            m_lent.push_back(assignment.code);
    }
    note();
    symbols->write(m_connection);
}

void SpareCodes::restore()
{
    if (m_lent.empty())
        return;
    std::vector<CodeAssignment> empty;
    for (const xcb_keycode_t code : m_lent)
        empty.push_back({code, keysyms::none, keysyms::none});
    assign(empty);
    // The file goes once the server has done it.
    const XcbPointer<xcb_get_input_focus_reply_t> done(xcb_get_input_focus_reply(
        m_connection.get(), xcb_get_input_focus(m_connection.get()), nullptr));
    m_lent.clear();
    QFile::remove(m_stateFile);
}

void SpareCodes::note() const
{
    QFile file(m_stateFile);
    if (m_stateFile.isEmpty() || !file.open(QIODevice::WriteOnly))
        return;
    for (const xcb_keycode_t code : m_lent)
        file.write(QByteArray::number(code) + ' ');
}

} // namespace tavrin
