#pragma once

#include "app/absence_questions.h"
#include "ui/controls/card_surface.h"

#include <QElapsedTimer>

#include <array>

namespace brevlin {

class AppModel;
class CapsuleButton;
class FormLabel;
class SymbolButton;

/// Asks what the time was that somebody was away: a card above the screen for as long as the question stands.
/// One question at a time; the next comes after the answer.
class AbsenceBar final : public CardSurface
{
    Q_OBJECT

public:
    explicit AbsenceBar(AppModel& model, QWidget* parent);

    /// The card's own, without its shadow.
    int heightFor(int width) const;
    /// The card takes this place.
    void lieIn(const QRect& card) { setGeometry(card.marginsAdded(shadowMargins)); }

Q_SIGNALS:
    /// It came, went or needs another room.
    void roomChanged();

private:
    void refresh();
    void answer(AbsenceDecision decision);
    void follow();
    bool holdsKeyboard() const;
    QString text() const;

    AppModel& m_model;
    FormLabel* m_text;                       // these are owned by this widget
    std::array<CapsuleButton*, 3> m_answers; // in the order of the decisions
    SymbolButton* m_close;
    std::optional<AbsenceQuestions::Question> m_question;
    QElapsedTimer m_sinceLastAnswer;
};

} // namespace brevlin
