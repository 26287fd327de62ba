#pragma once

#include <QObject>

#include <memory>

class QSocketNotifier;

namespace brevlin {

/// Turns SIGTERM, SIGINT and SIGHUP into one signal on the event loop, so that the program ends as if the
/// user had quit. There may be one at a time.
class TerminationSignals final : public QObject
{
    Q_OBJECT

public:
    explicit TerminationSignals(QObject* parent = nullptr);
    ~TerminationSignals() override;

Q_SIGNALS:
    void received();

private:
    std::unique_ptr<QSocketNotifier> m_notifier;
};

} // namespace brevlin
