#include "devcloud/polish/Corpus.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>

namespace tavrin::devcloud::testing {
namespace {

std::string withLineBreaks(std::string text)
{
    const std::string sign = "⏎";
    for (std::size_t at = text.find(sign); at != std::string::npos; at = text.find(sign, at))
        text.replace(at, sign.size(), "\n");
    return text;
}

/// Cuts what stands behind @p separator off @p text and gives it back; nothing when it is not
/// there.
std::string cutBehind(std::string& text, const std::string& separator)
{
    const std::size_t at = text.find(separator);
    if (at == std::string::npos)
        return {};
    std::string behind = text.substr(at + separator.size());
    text.erase(at);
    return behind;
}

CorpusEntry entryOf(std::string line)
{
    CorpusEntry entry;
    std::istringstream removed(cutBehind(line, " ~~ "));
    for (std::string word; removed >> word;)
        entry.removed.push_back(word);
    const std::string wanted = cutBehind(line, " ==> ");
    entry.said = withLineBreaks(line);
    entry.wanted = wanted.empty() ? entry.said : withLineBreaks(wanted);
    return entry;
}

bool isHeading(const std::string& line)
{
    return line.starts_with('[') && line.ends_with(']')
        && line.find_first_of(" ]") == line.size() - 1;
}

void readFile(const std::filesystem::path& file, std::vector<CorpusEntry>& entries)
{
    std::ifstream stream(file);
    Style style = Style::Professional;
    int number = 0;
    for (std::string line; std::getline(stream, line);) {
        ++number;
        const std::string place = file.filename().string() + ":" + std::to_string(number);
        if (line.empty() || line.starts_with("# "))
            continue;
        if (isHeading(line)) {
            style = styleFor(line.substr(1, line.size() - 2));
            continue;
        }
        CorpusEntry entry = entryOf(line);
        if (entry.said.empty() || line.ends_with(' '))
            throw std::runtime_error(place + " is no entry");
        entry.place = place;
        entry.style = style;
        entries.push_back(std::move(entry));
    }
}

} // namespace

const std::vector<CorpusEntry>& corpus()
{
    static const std::vector<CorpusEntry> entries = [] {
        std::vector<std::filesystem::path> files;
        for (const auto& file : std::filesystem::directory_iterator(TAVRIN_POLISH_CORPUS)) {
            if (file.path().extension() == ".txt")
                files.push_back(file.path());
        }
        std::ranges::sort(files);
        std::vector<CorpusEntry> result;
        for (const auto& file : files)
            readFile(file, result);
        return result;
    }();
    return entries;
}

} // namespace tavrin::devcloud::testing
