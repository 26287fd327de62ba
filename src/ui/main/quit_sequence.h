#pragma once

#include "platform/document_thread.h"
#include "platform/task_scheduler.h"

#include <QObject>
#include <QPointer>

#include <functional>

namespace brevlin {

class AppModel;
class MessageDialog;

/// The end of the program: as soon as everything is on the disk. What is not there after longestWait is named
/// in a sentence, and the program ends once that was read; without a reader it does not wait for ever.
class QuitSequence final : public QObject
{
    Q_OBJECT

public:
    static constexpr Seconds longestWait{10.0};
    static constexpr Seconds longestReading{10.0}; ///< where the system ends the program

    enum class Origin { user, system };

    QuitSequence(AppModel& model, DocumentThread& documents, TaskScheduler& scheduler,
                 QObject* parent = nullptr);

    /// Only the first call has an effect.
    void begin(Origin origin);
    /// For the end of a session or of the display, which allows no later step: waits here, for longestWait at
    /// most.
    void finishNow();

Q_SIGNALS:
    /// The windows are to go, and to leave to the disk what they remember.
    void began();
    void finished();

private:
    void look();
    void tell();
    std::string sentence() const;

    AppModel& m_model;
    DocumentThread& m_documents;
    TaskScheduler& m_scheduler;
    Origin m_origin = Origin::user;
    TaskHandle m_nextLook;
    int m_looks = 0;
    QPointer<MessageDialog> m_dialog;
};

} // namespace brevlin
