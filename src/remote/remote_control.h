#pragma once

#include "core/finished_session.h"
#include "core/timer_verb.h"
#include "platform/task_scheduler.h"

#include <QObject>

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

namespace brevlin {

class AppModel;

/// What other programs see of the timer and do to it, whichever way they come. Whatever changes together is
/// told once, when all of it is done.
class RemoteControl final : public QObject
{
    Q_OBJECT

public:
    struct Actions
    {
        /// The section of the window, or empty; and the token of the user's action.
        std::function<void(const std::string& section, const std::string& token)> show;
        std::function<void()> quit;
    };

    RemoteControl(AppModel& model, TaskScheduler& scheduler, Actions actions, QObject* parent = nullptr);

    AppModel& model() { return m_model; }
    const AppModel& model() const { return m_model; }

    /// Why it was not done, in the user's language; nothing once it is.
    std::optional<std::string> carryOut(TimerVerb verb);
    /// As above; the text is for the focus phase that begins, or the next one.
    std::optional<std::string> start(const std::optional<std::string>& intention);
    void setIntention(const std::string& intention);
    /// False for a section that the window has not.
    bool show(const std::string& section, const std::string& token);
    /// From the next turn of the event loop, so that whoever asked gets an answer.
    void quit();

    /// One line of JSON.
    std::string statusJson() const;
    /// The user's, as a language tag.
    std::string languageTag() const;

Q_SIGNALS:
    /// Anything but the time that passes.
    void changed();

private:
    void mayHaveChanged();
    bool isNewDay();

    AppModel& m_model;
    TaskScheduler& m_scheduler;
    Actions m_actions;
    std::optional<std::int64_t> m_day; // the local date of what was told last
    TaskHandle m_telling;
    TaskHandle m_quitting;
};

} // namespace brevlin
