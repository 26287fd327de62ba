#pragma once

#include "platform/durable_file.h"
#include "platform/login_item.h"

#include <QFileSystemWatcher>
#include <QObject>

#include <string>

namespace brevlin {

/// The program's entry in the user's autostart folder. What the user switched off in the desktop's own
/// settings is left switched off.
class AutostartLoginItem final : public QObject, public LoginItem
{
    Q_OBJECT

public:
    /// The folder need not exist: registering creates it. The program's path is what the entry starts.
    AutostartLoginItem(std::string folder, std::string programPath, DurableFile& files,
                       QObject* parent = nullptr);

    Status status() const override;
    Expected<void, std::string> registerItem() override;
    Expected<void, std::string> unregisterItem() override;
    void openSettings() override;
    void setChangeHandler(std::function<void()> handler) override;

    /// Points an entry that is in effect to this program where the one that the user registered is gone: it
    /// may have moved. For the start.
    void followProgram();

private:
    std::string entryPath() const;
    bool canRegister() const;
    void watch();

    std::string m_folder;
    std::string m_programPath;
    DurableFile& m_files;
    QFileSystemWatcher m_watcher;
    std::function<void()> m_changeHandler;
};

} // namespace brevlin
