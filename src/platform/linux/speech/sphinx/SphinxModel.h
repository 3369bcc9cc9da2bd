#pragma once

#include "base/Seconds.h"

#include <QList>
#include <QString>
#include <QStringList>

#include <optional>

namespace tavrin {

/// The files of an installed Sphinx model, and the language it hears.
struct SphinxModel {
    QString acousticModel; ///< A folder.
    QString dictionary;
    QString languageModel;
    QString language; ///< A BCP 47 tag; empty when the folder's name does not tell.

    friend bool operator==(const SphinxModel&, const SphinxModel&) = default;
};

/// A stretch of speech is decoded at once, in a fifth of its time: longer ones are cut.
inline constexpr Seconds sphinxLongestUtterance{20};

/// The model in @p folder: the acoustic model lies there or one folder deeper, a dictionary (.dict,
/// .dic) and a language model (.lm.bin, .lm.dmp, .lm) beside it or one folder up. Empty when
/// something is missing.
[[nodiscard]] std::optional<SphinxModel> sphinxModelIn(const QString& folder);

/// A model, and the folder in which sphinxModelIn() finds it.
struct InstalledSphinxModel {
    QString folder;
    SphinxModel model;
};

/// The models in subfolders of @p roots, by name.
[[nodiscard]] QList<InstalledSphinxModel> installedSphinxModels(const QStringList& roots);

/// The model to use: the one in @p preferredFolder unless that is empty, else of those installed
/// in subfolders of @p roots a Mandarin one, else an English one, else any.
[[nodiscard]] std::optional<SphinxModel> findSphinxModel(
    const QString& preferredFolder, const QStringList& roots);

/// Where packages and administrators install models.
[[nodiscard]] QStringList sphinxModelRoots();

} // namespace tavrin
