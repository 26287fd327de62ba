#pragma once

#include "platform/notification_silencer.h"

#include <deque>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace brevlin::test {

/// Desktops' switches that outlive whoever turns them. They answer at once unless the test makes them hang.
class FakeNotificationSilencer final : public NotificationSilencer
{
public:
    std::map<std::string, State> states; ///< of all switches; absent where it does not stand here
    std::optional<Switch> present;
    bool hangs = false;
    bool refuses = false;         ///< to be turned
    std::vector<std::string> log; ///< "silence dunst", "give back dunst"
    int looks = 0;
    Observer observer;

    void setObserver(Observer newObserver) override { observer = std::move(newObserver); }
    void look() override { ++looks; }
    Support support() const override { return present ? Support::full : Support::none; }
    const std::optional<Switch>& current() const override { return present; }
    void readState(const std::string& name, Answer answer) override
    {
        reply([this, name, answer = std::move(answer)] { answer(state(name)); });
    }
    void silence(const std::string& name, Completion completion) override
    {
        reply([this, name, completion = std::move(completion)] { completion(turn(name, State::silent)); });
    }
    void giveBack(const std::string& name, Completion completion) override
    {
        reply([this, name, completion = std::move(completion)] { completion(turn(name, State::heard)); });
    }
    bool giveBackNow(const std::string& name, Seconds /*longest*/) override
    {
        return !hangs && turn(name, State::heard);
    }

    State state(const std::string& name) const
    {
        const auto found = states.find(name);
        return found == states.end() ? State::absent : found->second;
    }
    /// Another server is there, or none.
    void serverIs(std::optional<Switch> found)
    {
        present = std::move(found);
        observer.switchChanged();
    }
    void userTurns(State state)
    {
        states[present->name] = state;
        observer.wasTurned();
    }
    /// One thing that was asked while it hung is carried out.
    void answerOne()
    {
        const auto next = std::move(m_questions.front());
        m_questions.pop_front();
        next();
    }
    void recover()
    {
        hangs = false;
        while (!m_questions.empty()) {
            answerOne();
        }
    }
    /// Whoever asked is gone.
    void forget() { m_questions.clear(); }
    std::size_t waitingCount() const { return m_questions.size(); }

private:
    bool turn(const std::string& name, State state)
    {
        log.push_back((state == State::silent ? "silence " : "give back ") + name);
        if (!refuses) {
            states[name] = state;
        }
        return !refuses;
    }
    void reply(std::function<void()> answer) { hangs ? m_questions.push_back(std::move(answer)) : answer(); }

    std::deque<std::function<void()>> m_questions;
};

} // namespace brevlin::test
