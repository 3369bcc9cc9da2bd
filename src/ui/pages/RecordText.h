#pragma once

#include <QFont>
#include <QString>
#include <QStringList>

#include <memory>
#include <vector>

class QPainter;
class QPointF;

namespace tavrin::ui {

/// The text of a record in lines, plain whatever is in it, with what is looked for marked.
class RecordText {
public:
    struct Options {
        QFont font;
        double width = 0; ///< In points.
        int mostLines = 1; ///< An ellipsis follows the last one.
        qsizetype mostUnits = 300; ///< UTF-16 units that are looked at.
        QString query{}; ///< What is marked; empty for nothing.
    };

    RecordText();
    ~RecordText();

    RecordText(const RecordText&) = delete;
    RecordText& operator=(const RecordText&) = delete;

    /// A text that would hide the first match begins a little before that instead.
    void setText(const QString& text, const Options& options);

    [[nodiscard]] int lineCount() const { return static_cast<int>(m_lines.size()); }

    /// Something of the text is left out.
    [[nodiscard]] bool isElided() const { return m_isElided; }

    /// The lines, as they are seen.
    [[nodiscard]] QStringList lines() const;

    /// What is marked of each line, as it is seen.
    [[nodiscard]] QStringList marked() const;

    /// @param lineHeight from one line to the next, in points.
    void paint(QPainter& painter, const QPointF& topLeft, int lineHeight) const;

private:
    struct Line;

    /// Answers how many units of @p text are seen.
    qsizetype layOut(const QString& text, const Options& options);
    void addLine(const QString& text, qsizetype start, const Options& options);
    void mark(const QString& text, const QString& query);

    std::vector<std::unique_ptr<Line>> m_lines;
    bool m_isElided = false;
};

} // namespace tavrin::ui
