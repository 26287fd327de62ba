#pragma once

#include "app/capsule.h"
#include "ui/capsule/capsule_colors.h"
#include "ui/style/animation.h"

#include <QWidget>

namespace brevlin {

class CapsulePage;
class NumericText;

/// Draws the capsule in one of its four states, exactly as its content says, and tells what its controls ask
/// for. It fills the window; what lies free of controls is left to the window, which moves by it.
class TopCapsuleView final : public QWidget
{
    Q_OBJECT

public:
    explicit TopCapsuleView(QWidget* parent = nullptr);

    void setContent(const CapsuleContent& content);
    /// Where the content lies, in this widget's coordinates, while the capsule itself is still on its way
    /// there: what is to be read does not move with its edges. As large as the widget until told otherwise.
    void setContentPlace(const QRect& place);
    /// What shows through the capsule. Clear until told otherwise.
    void setBackdrop(CapsuleBackdrop backdrop);
    /// What the capsule is called, for assistive technology.
    QString name() const;
    /// What assistive technology reads.
    QString spokenText() const;

Q_SIGNALS:
    void commanded(brevlin::CapsuleCommand command);

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void rebuild();
    static void discard(CapsulePage* page);
    void updateColors();
    void layOutPage();
    bool liesInside(const QRect& part) const;
    void showCompactTimer();
    void exchangePages(bool hadCompletion);
    void showOpacity(double opacity);

    CapsuleContent m_content;
    CapsuleColors m_colors;
    QRect m_contentPlace; // null: all of the widget
    CapsuleBackdrop m_backdrop = CapsuleBackdrop::clear;
    NumericText* m_compactClock;          // these are owned by this widget
    CapsulePage* m_page = nullptr;        // none for the compact timer
    CapsulePage* m_leavingPage = nullptr; // while it fades out
    ValueAnimation m_progress;
    ValueAnimation m_pageOpacity;
};

} // namespace brevlin
