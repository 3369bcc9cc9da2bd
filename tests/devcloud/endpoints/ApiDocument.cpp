#include "devcloud/endpoints/ApiDocument.h"

#include "devcloud/text/Ascii.h"

#include <cstdlib>
#include <sstream>

namespace tavrin::devcloud::testing {
namespace {

enum class Table {
    None,
    Request,
    Answer,
    Errors,
    Session,
    SharedErrors,
};

/// The cells of a table's row, without the bars and the white space around them.
std::vector<std::string> cellsOf(const std::string& line)
{
    std::vector<std::string> cells;
    std::istringstream stream(line);
    std::string cell;
    std::getline(stream, cell, '|');
    while (std::getline(stream, cell, '|'))
        cells.emplace_back(trimmedAscii(cell));
    cells.resize(3);
    return cells;
}

std::string withoutBackticks(const std::string& cell)
{
    return cell.size() > 2 && cell.front() == '`' ? cell.substr(1, cell.size() - 2) : cell;
}

DocumentedField fieldIn(const std::vector<std::string>& cells)
{
    return {withoutBackticks(cells[0]), cells[1], cells[2].starts_with("optional")};
}

class Reader {
public:
    explicit Reader(std::string_view markdown)
    {
        std::istringstream stream{std::string(markdown)};
        for (std::string line; std::getline(stream, line);)
            read(line);
    }

    std::vector<DocumentedEndpoint> endpoints;
    std::vector<DocumentedField> session;
    std::set<int> sharedErrors;

private:
    void read(const std::string& line)
    {
        if (line.starts_with("### ")) {
            const std::size_t space = line.find(' ', 4);
            DocumentedEndpoint endpoint;
            endpoint.method = line.substr(4, space - 4);
            endpoint.path = line.substr(space + 1);
            endpoints.push_back(endpoint);
        } else if (line.starts_with('|')) {
            readRow(cellsOf(line));
            return;
        } else if (!endpoints.empty() && line == "Authorization: bearer") {
            endpoints.back().needsToken = true;
        } else if (!endpoints.empty() && line.starts_with("Answer: session")) {
            endpoints.back().answersSession = true;
        }
        m_table = Table::None;
    }

    void readRow(const std::vector<std::string>& cells)
    {
        if (cells[0].starts_with("---"))
            return;
        if (m_table == Table::None) {
            m_table = tableFor(cells[0]);
            return;
        }
        switch (m_table) {
        case Table::Request:
            endpoints.back().request.push_back(fieldIn(cells));
            break;
        case Table::Answer:
            endpoints.back().answer.push_back(fieldIn(cells));
            break;
        case Table::Errors:
            endpoints.back().errors.push_back({std::atoi(cells[0].c_str()), cells[1]});
            break;
        case Table::Session:
            session.push_back(fieldIn(cells));
            break;
        case Table::SharedErrors:
            sharedErrors.insert(std::atoi(cells[0].c_str()));
            break;
        case Table::None:
            break;
        }
    }

    [[nodiscard]] Table tableFor(const std::string& heading) const
    {
        if (endpoints.empty())
            return heading == "Field" ? Table::Session : Table::SharedErrors;
        if (heading == "Request field")
            return Table::Request;
        return heading == "Answer field" ? Table::Answer : Table::Errors;
    }

    Table m_table = Table::None;
};

} // namespace

std::vector<DocumentedEndpoint> readApiDocument(std::string_view markdown)
{
    return Reader(markdown).endpoints;
}

std::vector<DocumentedField> readSessionFields(std::string_view markdown)
{
    return Reader(markdown).session;
}

std::set<int> readSharedErrors(std::string_view markdown)
{
    return Reader(markdown).sharedErrors;
}

} // namespace tavrin::devcloud::testing
