#pragma once

#include "platform/task_scheduler.h"

#include <QObject>
#include <QString>

namespace brevlin {

class MessageBus;

/// The desktop's side of StatusNotifierItem: makes the item known to whoever collects such items, now and
/// whenever another comes, and learns what is shown there. No call waits.
class StatusNotifierHost final : public QObject
{
    Q_OBJECT

public:
    StatusNotifierHost(MessageBus& bus, TaskScheduler& scheduler, QObject* parent = nullptr);

    /// The item has all that it shows: from now on it is made known. Some collectors read it once and
    /// overlook the signals that follow at once. Again changes nothing.
    void offerItem();
    /// Nobody shows such items, as far as the bus has answered.
    bool isAbsent() const { return m_isAbsent; }
    /// Whether somebody collects such items, who reads all of one that comes, and then listens.
    bool isCollecting() const { return !m_owner.isEmpty(); }
    /// Whether the label is shown beside the picture, which then needs no clock of its own. Nothing in the
    /// protocol says so, and many hosts take the label from its signal without ever asking. Those are known
    /// by the names that the collector of the items also has on the bus; of any other it is believed once the
    /// label was asked for by itself. The label ticks in any case.
    bool showsLabels() const { return m_showsLabels; }
    void labelAsked();

Q_SIGNALS:
    void changed();

private Q_SLOTS:
    void readHost();

private:
    void watchCollectors();
    void ownerChanged(const QString& owner);
    void trustAbsence();
    void registerItem(int attemptsLeft);
    void readKnownNames(int looksLeft);
    void setAbsent(bool isAbsent);

    MessageBus& m_bus;
    TaskScheduler& m_scheduler;
    QString m_owner; // of the collector's name; empty while there is none
    bool m_isOffered = false;
    bool m_isAbsent = false;
    bool m_showsLabels = false;
    TaskHandle m_nextAttempt;
    TaskHandle m_nextLook;
};

} // namespace brevlin
