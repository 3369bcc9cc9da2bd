#include "platform/linux/speech/sphinx/SphinxModel.h"

#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace tavrin {
namespace {

bool isAcousticModel(const QString& folder)
{
    return QFileInfo(folder + u"/mdef"_s).isFile();
}

QString acousticModelIn(const QString& folder)
{
    if (isAcousticModel(folder))
        return folder;
    const auto subfolders =
        QDir(folder).entryInfoList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name);
    for (const QFileInfo& subfolder : subfolders) {
        if (isAcousticModel(subfolder.filePath()))
            return subfolder.filePath();
    }
    return {};
}

/// The first file by name that ends in the first of the endings; else of the next one.
QString fileEndingIn(const QStringList& endings, const QStringList& folders)
{
    for (const QString& ending : endings) {
        for (const QString& folder : folders) {
            const auto files =
                QDir(folder).entryInfoList({u"*"_s + ending}, QDir::Files, QDir::Name);
            for (const QFileInfo& file : files) {
                // A model of phones beside the one of words serves another purpose.
                if (!file.fileName().contains(u"phone"_s))
                    return file.filePath();
            }
        }
    }
    return {};
}

QString languageNamedBy(const QString& name)
{
    static const QRegularExpression mandarin(
        u"^(zh|cmn|mandarin|chinese)"_s, QRegularExpression::CaseInsensitiveOption);
    static const QRegularExpression tag(
        u"^([a-z]{2})(?:[-_]([a-z]{2}))?(?![a-z])"_s, QRegularExpression::CaseInsensitiveOption);
    if (mandarin.match(name).hasMatch())
        return u"zh-CN"_s;
    const QRegularExpressionMatch match = tag.match(name);
    if (!match.hasMatch())
        return {};
    const QString region = match.captured(2).toUpper();
    const QString language = match.captured(1).toLower();
    return region.isEmpty() ? language : language + u'-' + region;
}

int rank(const SphinxModel& model)
{
    if (model.language.startsWith(u"zh"_s))
        return 0;
    return model.language.startsWith(u"en"_s) ? 1 : 2;
}

} // namespace

std::optional<SphinxModel> sphinxModelIn(const QString& folder)
{
    const QString acousticModel = acousticModelIn(folder);
    if (acousticModel.isEmpty())
        return std::nullopt;
    QStringList places{folder};
    if (acousticModel != folder)
        places.append(acousticModel);
    SphinxModel model{
        .acousticModel = acousticModel,
        .dictionary = fileEndingIn({u".dict"_s, u".dic"_s}, places),
        .languageModel = fileEndingIn({u".lm.bin"_s, u".lm.dmp"_s, u".lm"_s}, places),
        .language = languageNamedBy(QDir(folder).dirName()),
    };
    if (model.dictionary.isEmpty() || model.languageModel.isEmpty())
        return std::nullopt;
    if (model.language.isEmpty())
        model.language = languageNamedBy(QDir(acousticModel).dirName());
    return model;
}

QList<InstalledSphinxModel> installedSphinxModels(const QStringList& roots)
{
    QList<InstalledSphinxModel> models;
    for (const QString& root : roots) {
        const auto folders =
            QDir(root).entryInfoList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name);
        for (const QFileInfo& folder : folders) {
            if (auto model = sphinxModelIn(folder.filePath()))
                models.append({folder.filePath(), *std::move(model)});
        }
    }
    return models;
}

std::optional<SphinxModel> findSphinxModel(const QString& preferredFolder, const QStringList& roots)
{
    if (!preferredFolder.isEmpty())
        return sphinxModelIn(QDir::cleanPath(preferredFolder));
    const QList<InstalledSphinxModel> installed = installedSphinxModels(roots);
    const auto best = std::ranges::min_element(
        installed, {}, [](const InstalledSphinxModel& each) { return rank(each.model); });
    if (best == installed.end())
        return std::nullopt;
    return best->model;
}

QStringList sphinxModelRoots()
{
    return {u"/usr/local/share/pocketsphinx/model"_s, u"/usr/share/pocketsphinx/model"_s};
}

} // namespace tavrin
