#pragma once

#include "platform/document_thread.h"
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
    /// What is written is written on the documents' thread.
    AutostartLoginItem(std::string folder, std::string programPath, DurableFile& files,
                       DocumentThread& documents, QObject* parent = nullptr);

    Status status() const override;
    void registerItem(Completion completion) override;
    void unregisterItem(Completion completion) override;
    void openSettings() override;
    void setChangeHandler(std::function<void()> handler) override;

    /// Points an entry that is in effect to this program where the one that the user registered is gone: it
    /// may have moved. For the start.
    void followProgram();

private:
    std::string entryPath() const;
    bool canRegister() const;
    void change(std::function<Expected<void, std::string>()> write, Completion completion);
    void watch();

    std::string m_folder;
    std::string m_programPath;
    DurableFile& m_files;
    DocumentThread& m_documents;
    QFileSystemWatcher m_watcher;
    std::function<void()> m_changeHandler;
};

} // namespace brevlin
