#include "ui/main/absence_bar.h"

#include "app/absence_text.h"
#include "app/app_model.h"
#include "ui/controls/capsule_button.h"
#include "ui/controls/form.h"
#include "ui/controls/spoken_element.h"
#include "ui/controls/symbol_button.h"
#include "ui/style/symbol.h"
#include "ui/style/text.h"
#include "ui/style/typography.h"

#include <QApplication>
#include <QHBoxLayout>

#include <utility>

namespace brevlin {

namespace {

constexpr int padding = 10;
constexpr int textPadding = 6; // beside the padding
constexpr int gap = 8;
constexpr int symbolSize = 18;
constexpr BilingualText closeText{"稍后再说", "Not now"};

constexpr std::array decisions{AbsenceDecision::keep, AbsenceDecision::doNotCount,
                               AbsenceDecision::endAtStart};

} // namespace

AbsenceBar::AbsenceBar(AppModel& model, QWidget* parent)
    : CardSurface(padding, parent)
    , m_model(model)
    , m_text(new FormLabel(textFont(TextRole::body), ThemeColor::label, this))
    , m_answers{}
    , m_close(nullptr)
{
    auto* line = new QHBoxLayout(this);
    line->setContentsMargins(0, 0, 0, 0);
    line->setSpacing(gap);
    line->addSpacing(textPadding);
    line->addWidget(new SymbolView(Symbol::clockBadgeQuestionmark, symbolSize, ThemeColor::orange, this));
    m_text->setWordWrap(true);
    line->addWidget(m_text, 1, Qt::AlignVCenter);
    for (std::size_t index = 0; index < decisions.size(); ++index) {
        auto* button = new CapsuleButton(CapsuleStyle::secondary, ControlSize::compact, this);
        connect(button, &QAbstractButton::clicked, this,
                [this, decision = decisions.at(index)] { answer(decision); });
        line->addWidget(button);
        m_answers.at(index) = button;
    }
    m_close = new SymbolButton(Symbol::xmark, this);
    line->addWidget(m_close);
    makeSpokenGroup(*this, QAccessible::Grouping, [this] { return text(); });
    connect(m_close, &QAbstractButton::clicked, this, [this] { m_model.absences().putAside(); });
    connect(&model.absences(), &AbsenceQuestions::currentChanged, this, &AbsenceBar::follow);
    connect(&model, &AppModel::preferencesChanged, this, &AbsenceBar::refresh);
    connect(&model, &AppModel::ticked, this, [this] {
        if (m_question && m_text->text() != text()) {
            refresh(); // the user has come to another time zone
        }
    });
    follow();
}

int AbsenceBar::heightFor(int width) const
{
    const int around = shadowMargins.left() + shadowMargins.right();
    return layout()->totalHeightForWidth(width + around) - shadowMargins.top() - shadowMargins.bottom();
}

QString AbsenceBar::text() const
{
    return m_question
               ? qtText(AbsenceText::statement(m_question->away, m_model.calendar(), m_model.language()))
               : QString();
}

// The second press of a double click is none on the next question.
void AbsenceBar::answer(AbsenceDecision decision)
{
    const bool isMeant =
        !m_sinceLastAnswer.isValid() || m_sinceLastAnswer.elapsed() > QApplication::doubleClickInterval();
    if (m_question && isMeant) {
        m_sinceLastAnswer.start();
        m_model.decideAbsence(m_question->session, m_question->index, decision);
    }
}

bool AbsenceBar::holdsKeyboard() const
{
    const QWidget* focused = QApplication::focusWidget();
    return focused != nullptr && isAncestorOf(focused);
}

void AbsenceBar::follow()
{
    const auto before = std::exchange(m_question, m_model.absences().current());
    if (!m_question && holdsKeyboard()) {
        parentWidget()->setFocus(Qt::OtherFocusReason); // or it would go to the window's buttons
    }
    refresh();
    if (m_question && m_question != before) {
        announce(*this, text());
    }
}

void AbsenceBar::refresh()
{
    if (m_question) {
        const AppLanguage language = m_model.language();
        m_text->setText(text());
        for (std::size_t index = 0; index < decisions.size(); ++index) {
            m_answers.at(index)->setText(qtText(AbsenceText::answer(
                decisions.at(index), m_question->away.start, m_model.calendar(), language)));
        }
        m_close->setText(qtText(closeText.in(language)));
        m_close->setToolTip(m_close->text());
    }
    setVisible(m_question.has_value());
    Q_EMIT roomChanged();
}

} // namespace brevlin
