#pragma once

#include <QString>

namespace tavrin {

/// What the dictionary's actions need of the dictionary page. Main thread only.
class DictionaryPageView {
public:
    virtual ~DictionaryPageView() = default;

    [[nodiscard]] virtual QString newTerm() const = 0;
    virtual void clearNewTerm() = 0;

    virtual void setSearchText(const QString& text) = 0;

    /// Lets terms of every source show.
    virtual void selectAllFilter() = 0;

    /// Shows what the store holds now.
    virtual void refreshDictionaryView() = 0;
};

} // namespace tavrin
