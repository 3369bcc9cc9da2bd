#include "platform/linux/x11/SpareCodes.h"

#include "base/Log.h"

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
    const KeyboardMap map = KeyboardMap::read(m_connection);
    for (const CodeAssignment& assignment : assignments) {
        if (std::find(m_lent.begin(), m_lent.end(), assignment.code) == m_lent.end())
            m_lent.push_back(assignment.code);
    }
    note();
    // One request over everything from the first to the last code: whoever follows the map reads it
    // anew for every request. Codes in between keep what they have.
    const auto [first, last] = std::minmax_element(assignments.begin(), assignments.end(),
        [](const auto& one, const auto& other) { return one.code < other.code; });
    const int perCode = std::max(map.symbolsPerCode(), 2);
    std::vector<xcb_keysym_t> symbols;
    for (int code = first->code; code <= last->code; ++code) {
        for (int level = 0; level < perCode; ++level)
            symbols.push_back(map.symbol(static_cast<xcb_keycode_t>(code), level));
    }
    for (const CodeAssignment& assignment : assignments) {
        const auto row = symbols.begin()
            + (assignment.code - first->code) * static_cast<std::ptrdiff_t>(perCode);
        std::fill(row, row + perCode, keysyms::none);
        row[0] = assignment.plain;
        row[1] = assignment.shifted;
    }
    xcb_change_keyboard_mapping(m_connection.get(),
        static_cast<quint8>(last->code - first->code + 1), first->code,
        static_cast<quint8>(perCode), symbols.data());
    xcb_flush(m_connection.get());
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
