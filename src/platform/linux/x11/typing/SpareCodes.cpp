#include "platform/linux/x11/typing/SpareCodes.h"

#include "base/Log.h"
#include "platform/linux/x11/typing/KeySymbols.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>

namespace tavrin {
namespace {

constexpr qint64 longestState = 8192;

/// What a file of lent codes says: its owner in the first line, then a code a line with its two
/// symbols. Lines that are none of this are left out.
struct Note {
    ProcessIdentity owner;
    std::vector<CodeAssignment> codes;
};

Note readNote(const QString& path)
{
    Note note;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return note;
    const QList<QByteArray> lines = file.read(longestState).split('\n');
    const QList<QByteArray> owner = lines.first().split(' ');
    if (owner.size() == 2)
        note.owner = {owner[0].toLongLong(), owner[1].toULongLong()};
    for (const QByteArray& line : lines.sliced(1)) {
        const QList<QByteArray> words = line.split(' ');
        bool isCode = false;
        const ushort code = words.first().toUShort(&isCode);
        if (words.size() == 3 && isCode && code <= 255)
            note.codes.push_back(
                {static_cast<xcb_keycode_t>(code), words[1].toUInt(), words[2].toUInt()});
    }
    return note;
}

/// The first and the last code of @p codes, of which there is one at least.
std::pair<xcb_keycode_t, xcb_keycode_t> rangeOf(const std::vector<CodeAssignment>& codes)
{
    const auto [first, last] = std::minmax_element(codes.begin(), codes.end(),
        [](const auto& one, const auto& other) { return one.code < other.code; });
    return {first->code, last->code};
}

} // namespace

SpareCodes::SpareCodes(
    const X11Connection& connection, QString stateFile, const ProcessIdentity& owner)
    : m_connection(connection)
    , m_stateFile(std::move(stateFile))
    , m_owner(owner)
{
}

QString SpareCodes::fileOf(const QString& stateFile, const ProcessIdentity& owner)
{
    return stateFile.isEmpty() ? QString() : stateFile + u'.' + QString::number(owner.number);
}

void SpareCodes::recover()
{
    if (m_stateFile.isEmpty())
        return;
    const QFileInfo state(m_stateFile);
    const QDir folder = state.dir();
    const QStringList files =
        folder.entryList({state.fileName() + QStringLiteral(".*")}, QDir::Files);
    for (const QString& file : files)
        recover(folder.filePath(file));
}

void SpareCodes::recover(const QString& path)
{
    const Note note = readNote(path);
    if (processWithNumber(note.owner.number) == note.owner)
        return;
    std::vector<CodeAssignment> left = note.codes;
    if (!left.empty()) {
        const auto [first, last] = rangeOf(left);
        const auto symbols = KeySymbols::read(m_connection, first, last);
        if (!symbols)
            return;
        std::erase_if(left, [&](const CodeAssignment& code) { return !symbols->carries(code); });
    }
    if (!left.empty()) {
        qCInfo(log::platform) << "Giving back key codes that an earlier run had borrowed";
        empty(left);
    }
    QFile::remove(path);
}

std::vector<xcb_keycode_t> SpareCodes::codes(const KeyboardMap& map) const
{
    std::vector<xcb_keycode_t> codes = map.emptyCodes();
    for (const CodeAssignment& lent : m_lent)
        codes.push_back(lent.code);
    std::sort(codes.begin(), codes.end());
    codes.erase(std::unique(codes.begin(), codes.end()), codes.end());
    return codes;
}

void SpareCodes::assign(const std::vector<CodeAssignment>& assignments)
{
    if (assignments.empty())
        return;
    const auto [first, last] = rangeOf(assignments);
    auto symbols = KeySymbols::read(m_connection, first, last);
    if (!symbols)
        return;
    for (const CodeAssignment& assignment : assignments) {
        symbols->assign(assignment);
        std::erase_if(
            m_lent, [&](const CodeAssignment& lent) { return lent.code == assignment.code; });
        m_lent.push_back(assignment);
    }
    note();
    symbols->write(m_connection);
}

void SpareCodes::restore()
{
    if (m_lent.empty())
        return;
    empty(m_lent);
    m_lent.clear();
    QFile::remove(fileOf(m_stateFile, m_owner));
}

/// Returns once the server has done it: the file goes then.
void SpareCodes::empty(const std::vector<CodeAssignment>& codes) const
{
    const auto [first, last] = rangeOf(codes);
    auto symbols = KeySymbols::read(m_connection, first, last);
    if (!symbols)
        return;
    for (const CodeAssignment& code : codes)
        symbols->assign({code.code, keysyms::none, keysyms::none});
    symbols->write(m_connection);
    const XcbPointer<xcb_get_input_focus_reply_t> done(xcb_get_input_focus_reply(
        m_connection.get(), xcb_get_input_focus(m_connection.get()), nullptr));
}

void SpareCodes::note() const
{
    QFile file(fileOf(m_stateFile, m_owner));
    if (m_stateFile.isEmpty() || !file.open(QIODevice::WriteOnly))
        return;
    QByteArray text =
        QByteArray::number(m_owner.number) + ' ' + QByteArray::number(m_owner.birth) + '\n';
    for (const CodeAssignment& code : m_lent)
        text += QByteArray::number(code.code) + ' ' + QByteArray::number(code.plain) + ' '
            + QByteArray::number(code.shifted) + '\n';
    file.write(text);
}

} // namespace tavrin
