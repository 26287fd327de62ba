#include "app/absence_announcer.h"

#include "app/absence_text.h"
#include "app/app_model.h"

namespace brevlin {

AbsenceAnnouncer::AbsenceAnnouncer(AppModel& model, CenterSource center)
    : m_model(model), m_center(std::move(center))
{
    connect(&model.absences(), &AbsenceQuestions::asked, this,
            [this](const AbsenceQuestions::Question& question) {
                m_waiting.insert({question.session, question.index});
                follow();
            });
    connect(&model.absences(), &AbsenceQuestions::currentChanged, this, &AbsenceAnnouncer::follow);
}

void AbsenceAnnouncer::follow()
{
    const auto& current = m_model.absences().current();
    if (m_shown && m_shown != current) {
        m_service->withdraw();
        m_shown.reset();
    }
    if (current && m_waiting.erase({current->session, current->index}) > 0) {
        show(*current);
    }
}

void AbsenceAnnouncer::show(const AbsenceQuestions::Question& question)
{
    if (!m_service) {
        m_service = std::make_unique<AbsenceNotificationService>(m_center());
        m_service->setAnswerHandler(
            [this](const Uuid& session, std::size_t index, const std::optional<AbsenceDecision>& decision) {
                if (decision) {
                    m_model.decideAbsence(session, index, *decision);
                } else {
                    m_model.activateMainWindow();
                }
            });
    }
    const auto answer = [&](AbsenceDecision decision) {
        return AbsenceText::answer(decision, question.away.start, m_model.calendar(), m_model.language());
    };
    m_shown = question;
    m_service->ask({question.session, question.index,
                    AbsenceText::statement(question.away, m_model.calendar(), m_model.language()),
                    AbsenceText::question(m_model.language()), answer(AbsenceDecision::keep),
                    answer(AbsenceDecision::doNotCount), answer(AbsenceDecision::endAtStart)},
                   m_model.now());
}

} // namespace brevlin
