#pragma once

#include "platform/freedesktop/notifications/switches/do_not_disturb_switch.h"

#include <QString>

#include <deque>
#include <functional>

class QDBusMessage;
class QProcess;

namespace brevlin {

/// A key of GSettings that is true or false.
struct SettingsKey
{
    const char* schema = nullptr;
    const char* path = nullptr;
    const char* name = nullptr;
    bool isHeard = false; ///< what it says while notifications are heard
};

/// Asks the program gsettings, as a user would: the format in which the settings' own daemon takes changes is
/// private, and their library in this process would end it where a schema is missing, and read files and
/// start threads on its own. What is asked is carried out one after the other, so that no answer is older
/// than a change before it.
class SettingsSwitch final : public DoNotDisturbSwitch
{
    Q_OBJECT

public:
    SettingsSwitch(MessageBus& bus, SettingsKey key) : m_bus(bus), m_key(key) {}
    ~SettingsSwitch() override;

    void follow() override;
    void read(Answer answer) override;
    void turn(bool isOn, Completion completion) override;
    bool turnOffNow(Seconds longest) override;

private Q_SLOTS:
    void settingsChanged(const QDBusMessage& message);

private:
    struct Question
    {
        QStringList arguments;
        std::function<void(int exitCode, const QByteArray& output)> answered;
    };

    QStringList setting(bool isOn) const;
    void ask(Question question);
    void askNext();
    void finish(int exitCode);

    MessageBus& m_bus;
    SettingsKey m_key;
    bool m_follows = false;
    std::deque<Question> m_questions; // the first one is being asked
    QProcess* m_process = nullptr;    // owned by this object
};

std::unique_ptr<DoNotDisturbSwitch> makeSettingsSwitch(MessageBus& bus, SettingsKey key);

} // namespace brevlin
