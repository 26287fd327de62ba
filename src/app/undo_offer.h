#pragma once

#include "platform/task_scheduler.h"

#include <QObject>

#include <cstddef>
#include <functional>
#include <optional>

namespace brevlin {

/// What can be taken back for a few seconds: the last thing that the user did and may not have meant. A newer
/// one takes its place, so that it is always clear what is taken back.
class UndoOffer final : public QObject
{
    Q_OBJECT

public:
    enum class Kind { removal, renaming, import, restoration, endingEarly, switching, skipping };

    struct Offer
    {
        Kind kind = Kind::removal;
        std::size_t count = 1; ///< of records, where it is about records
        std::function<void()> takeBack;

        /// Whether it is a command of the timer's, and no step of the history.
        bool isOfTimer() const
        {
            return kind == Kind::endingEarly || kind == Kind::switching || kind == Kind::skipping;
        }
    };

    static constexpr Seconds duration{8.0};

    explicit UndoOffer(TaskScheduler& scheduler) : m_scheduler(scheduler) {}

    const std::optional<Offer>& current() const { return m_offer; }
    void make(Offer offer);
    void withdraw();
    /// Only where it is of one of the timer's commands.
    void withdrawTimers();
    /// Takes it back; nothing where nothing is offered any more.
    void accept();

Q_SIGNALS:
    void changed();

private:
    TaskScheduler& m_scheduler;
    std::optional<Offer> m_offer;
    TaskHandle m_end;
};

} // namespace brevlin
