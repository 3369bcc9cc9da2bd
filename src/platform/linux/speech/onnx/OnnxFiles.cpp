#include "platform/linux/speech/onnx/OnnxFiles.h"

#include <QCollator>
#include <QDir>
#include <QMap>

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace tavrin {
namespace {

enum class Role { Model, Encoder, Decoder, Joiner };
constexpr std::size_t roleCount = 4;
constexpr qsizetype mostFiles = 1000;

struct Candidate {
    QFileInfo file;
    Role role = Role::Model;
    int precision = 0; ///< The higher the better.
    QString set; ///< The name without what differs inside a set.
};

/// The files of one set, by role.
using FileSet = std::array<Candidate, roleCount>;

Candidate candidateOf(const QFileInfo& file)
{
    Candidate candidate{.file = file, .precision = 1, .set = file.completeBaseName().toLower()};
    static const QList<std::pair<QLatin1StringView, Role>> roles{
        {"encoder"_L1, Role::Encoder}, {"decoder"_L1, Role::Decoder}, {"joiner"_L1, Role::Joiner}};
    for (const auto& [word, role] : roles) {
        if (candidate.set.contains(word)) {
            candidate.role = role;
            candidate.set.remove(word);
            break;
        }
    }
    static const QList<std::pair<QLatin1StringView, int>> precisions{
        {".int8"_L1, 2}, {"-int8"_L1, 2}, {".fp16"_L1, 0}, {"-fp16"_L1, 0}};
    for (const auto& [word, precision] : precisions) {
        if (candidate.set.endsWith(word)) {
            candidate.precision = precision;
            candidate.set.chop(word.size());
        }
    }
    return candidate;
}

const QFileInfo& fileOf(const FileSet& set, Role role)
{
    return set[static_cast<std::size_t>(role)].file;
}

bool has(const FileSet& set, Role role)
{
    return !fileOf(set, role).filePath().isEmpty();
}

/// How much of a model the set has.
int completeness(const FileSet& set)
{
    const bool hasPair = has(set, Role::Encoder) && has(set, Role::Decoder);
    if (hasPair)
        return has(set, Role::Joiner) ? 3 : 2;
    return has(set, Role::Model) ? 1 : 0;
}

QMap<QString, FileSet> setsIn(const QFileInfoList& files)
{
    QMap<QString, FileSet> sets;
    for (const QFileInfo& file : files) {
        const Candidate candidate = candidateOf(file);
        Candidate& chosen = sets[candidate.set][static_cast<std::size_t>(candidate.role)];
        if (chosen.file.filePath().isEmpty() || chosen.precision < candidate.precision)
            chosen = candidate;
    }
    return sets;
}

FileSet bestOf(const QMap<QString, FileSet>& sets)
{
    QCollator collator(QLocale(QLocale::English, QLocale::UnitedStates));
    collator.setNumericMode(true);
    // A detector of speech may lie beside a model that is just called so.
    const auto rank = [](const FileSet& set, const QString& name) {
        return std::pair(completeness(set), name.startsWith("model"_L1));
    };
    FileSet best;
    QString bestName;
    for (auto set = sets.begin(); set != sets.end(); ++set) {
        const auto ranks = std::pair(rank(*set, set.key()), rank(best, bestName));
        const bool comesLater = collator.compare(set.key(), bestName) > 0;
        if (ranks.first > ranks.second || (ranks.first == ranks.second && comesLater)) {
            best = *set;
            bestName = set.key();
        }
    }
    return best;
}

/// "tokens.txt"; else the first by name that ends like that, as "tiny-tokens.txt".
QString tokensIn(const QDir& folder)
{
    const QStringList names = folder.entryList({u"*tokens.txt"_s}, QDir::Files, QDir::Name);
    if (names.isEmpty())
        return {};
    return folder.filePath(names.contains("tokens.txt"_L1) ? u"tokens.txt"_s : names.first());
}

/// Of the model and of its weights where they stand in a file of their own: "model.onnx.data",
/// "model.onnx_data", "model.weights".
qint64 bytesOf(const QFileInfo& model, const QFileInfoList& all)
{
    qint64 bytes = 0;
    for (const QFileInfo& file : all) {
        const bool isWeights = file.fileName().startsWith(model.fileName())
            || file.fileName() == model.completeBaseName() + u".weights"_s;
        bytes += isWeights ? file.size() : 0;
    }
    return bytes;
}

} // namespace

OnnxResult<OnnxFiles> findOnnxFiles(const QString& folder)
{
    const QDir directory(folder);
    if (folder.isEmpty() || !directory.exists())
        return onnxFailure(OnnxFault::NoFolder, folder);
    const QFileInfoList all = directory.entryInfoList(QDir::Files, QDir::Name);
    QFileInfoList models;
    std::ranges::copy_if(all, std::back_inserter(models),
        [](const QFileInfo& file) { return file.suffix().toLower() == "onnx"_L1; });
    const FileSet set = bestOf(setsIn(models.mid(0, mostFiles)));
    if (completeness(set) == 0)
        return onnxFailure(OnnxFault::NoModel, folder);
    OnnxFiles files;
    if (has(set, Role::Encoder) && has(set, Role::Decoder)) {
        files.encoder = fileOf(set, Role::Encoder).filePath();
        files.decoder = fileOf(set, Role::Decoder).filePath();
        files.joiner = fileOf(set, Role::Joiner).filePath();
    } else {
        files.model = fileOf(set, Role::Model).filePath();
    }
    for (const QString& path : {files.model, files.encoder, files.decoder, files.joiner}) {
        if (!path.isEmpty())
            files.bytes += bytesOf(QFileInfo(path), all);
    }
    files.tokens = tokensIn(directory);
    if (files.tokens.isEmpty())
        return onnxFailure(OnnxFault::NoTokens, folder);
    if (directory.exists(u"bpe.vocab"_s))
        files.bpeVocabulary = directory.filePath(u"bpe.vocab"_s);
    return files;
}

} // namespace tavrin
