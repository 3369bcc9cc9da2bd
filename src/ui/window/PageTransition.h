#pragma once

#include <QPixmap>
#include <QVariantAnimation>
#include <QWidget>

namespace tavrin::ui {

/// Lets a page come in: for 0.16 s it rises by four points and becomes opaque ("tavPageFade",
/// "tavPageMove"). The page itself stands there at once and can be used; what moves is its picture.
class PageTransition final : public QWidget {
    Q_OBJECT

public:
    explicit PageTransition(QWidget& window);

    /// @param page a sibling that is shown.
    void start(QWidget& page);

    /// The page stands as it is.
    void stop();

    /// How long it takes.
    [[nodiscard]] int milliseconds() const { return m_progress.duration(); }

    [[nodiscard]] bool isRunning() const
    {
        return m_progress.state() == QAbstractAnimation::Running;
    }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QVariantAnimation m_progress;
    QPixmap m_picture;
};

} // namespace tavrin::ui
