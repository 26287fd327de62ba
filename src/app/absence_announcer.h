#pragma once

#include "app/absence_questions.h"
#include "services/absence_notification_service.h"

#include <QObject>

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <utility>

namespace brevlin {

class AppModel;

/// Has each question about an absence asked once by a notification, too, in the order in which the window
/// asks, and takes it back as soon as it is answered or put aside there.
class AbsenceAnnouncer final : public QObject
{
    Q_OBJECT

public:
    /// Gives the notification centre for the questions alone, asked for at the first: most runs need none. It
    /// outlives this.
    using CenterSource = std::function<UserNotificationCenter&()>;

    AbsenceAnnouncer(AppModel& model, CenterSource center);

private:
    using Key = std::pair<Uuid, std::size_t>;

    void follow();
    void show(const AbsenceQuestions::Question& question);

    AppModel& m_model;
    CenterSource m_center;
    std::unique_ptr<AbsenceNotificationService> m_service;
    std::set<Key> m_waiting; // asked, and never shown yet
    std::optional<AbsenceQuestions::Question> m_shown;
};

} // namespace brevlin
