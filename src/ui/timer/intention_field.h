#pragma once

#include "core/intention_index.h"
#include "ui/controls/text_field.h"

#include <QStringList>
#include <QTimer>

#include <memory>

namespace brevlin {

class AppModel;
class SuggestionList;

/// What the focus phase is for, in one quiet line: typed before it starts or while it runs, or chosen from
/// what former phases were for. Return takes what was typed, whatever is offered, and starts an idle timer.
class IntentionField final : public TextField
{
    Q_OBJECT

public:
    explicit IntentionField(AppModel& model, QWidget* parent = nullptr);
    ~IntentionField() override;

    /// What is offered now; empty while nothing is.
    QStringList offered() const;

protected:
    void focusOutEvent(QFocusEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;

private:
    void translate();
    void follow();
    void take();
    void finish();
    void giveUp();
    void leave();
    void offer();
    void choose(const QString& text);

    AppModel& m_model;
    std::unique_ptr<IntentionIndex> m_index; // of the history as it is; none until it is asked
    SuggestionList* m_list = nullptr;        // a child of the window, which may go first
    QTimer m_pause;                          // since the last key
    bool m_isTaking = false;
};

} // namespace brevlin
