#include "platform/freedesktop/login/autostart_login_item.h"

#include "platform/freedesktop/login/autostart_entry.h"

#include <QDesktopServices>
#include <QFile>
#include <QProcess>
#include <QStandardPaths>
#include <QUrl>

#include <unistd.h>

#include <array>
#include <filesystem>
#include <utility>

namespace brevlin {

namespace {

/// The program that shows a desktop's list of what starts at login.
struct SettingsPage
{
    const char* desktop; // as $XDG_CURRENT_DESKTOP names it
    const char* program;
    const char* argument; // none when null
};

constexpr std::array settingsPages{
    SettingsPage{"KDE", "systemsettings", "kcm_autostart"},
    SettingsPage{"XFCE", "xfce4-session-settings", nullptr},
    SettingsPage{"MATE", "mate-session-properties", nullptr},
    SettingsPage{"GNOME", "gnome-tweaks", nullptr},
};

// Whether the program is there, as a path or in the user's search path.
bool canStart(const std::string& program)
{
    return program.starts_with('/')
               ? access(program.c_str(), X_OK) == 0
               : !program.empty() &&
                     !QStandardPaths::findExecutable(QString::fromStdString(program)).isEmpty();
}

QString qtPath(const std::string& path)
{
    return QFile::decodeName(path.c_str());
}

// The nearest folder that exists.
std::filesystem::path existingAncestor(std::filesystem::path path)
{
    std::error_code ignored;
    while (!path.empty() && path != path.root_path() && !std::filesystem::is_directory(path, ignored)) {
        path = path.parent_path();
    }
    return path;
}

} // namespace

AutostartLoginItem::AutostartLoginItem(std::string folder, std::string programPath, DurableFile& files,
                                       QObject* parent)
    : QObject(parent), m_folder(std::move(folder)), m_programPath(std::move(programPath)), m_files(files)
{
    connect(&m_watcher, &QFileSystemWatcher::directoryChanged, this, [this] {
        watch();
        if (m_changeHandler) {
            m_changeHandler();
        }
    });
    watch();
}

// The folder rather than the file: settings programs replace the file.
void AutostartLoginItem::watch()
{
    const QString folder = qtPath(existingAncestor(m_folder).string());
    if (!m_watcher.directories().contains(folder)) {
        if (!m_watcher.directories().isEmpty()) {
            m_watcher.removePaths(m_watcher.directories());
        }
        m_watcher.addPath(folder);
    }
}

void AutostartLoginItem::setChangeHandler(std::function<void()> handler)
{
    m_changeHandler = std::move(handler);
}

std::string AutostartLoginItem::entryPath() const
{
    return m_folder + "/com.quillmark.Brevlin.desktop";
}

bool AutostartLoginItem::canRegister() const
{
    return access(existingAncestor(m_folder).c_str(), W_OK | X_OK) == 0 &&
           access(m_programPath.c_str(), X_OK) == 0;
}

LoginItem::Status AutostartLoginItem::status() const
{
    const auto document = m_files.read(entryPath());
    if (!document || (!document->has_value() && !canRegister())) {
        return Status::notFound;
    }
    const auto entry = document->has_value() ? parseAutostartEntry(**document) : std::nullopt;
    if (!entry) {
        return Status::notRegistered;
    }
    return entry->isEnabled ? Status::enabled : Status::requiresApproval;
}

Expected<void, std::string> AutostartLoginItem::registerItem()
{
    if (const auto written = m_files.write(entryPath(), makeAutostartEntry(m_programPath)); !written) {
        return Unexpected{written.error().description};
    }
    watch();
    return {};
}

Expected<void, std::string> AutostartLoginItem::unregisterItem()
{
    if (const auto removed = m_files.remove(entryPath()); !removed) {
        return Unexpected{removed.error().description};
    }
    return {};
}

void AutostartLoginItem::followProgram()
{
    const auto document = m_files.read(entryPath());
    if (!document || !document->has_value()) {
        return;
    }
    const auto entry = parseAutostartEntry(**document);
    if (entry && entry->isEnabled && !canStart(execProgram(entry->command))) {
        // Should this fail, the entry stays as it is and the next start tries again.
        [[maybe_unused]] const auto written =
            m_files.write(entryPath(), withCommand(**document, execValue(m_programPath)));
    }
}

void AutostartLoginItem::openSettings()
{
    const QStringList desktops = qEnvironmentVariable("XDG_CURRENT_DESKTOP").split(QLatin1Char(':'));
    for (const SettingsPage& page : settingsPages) {
        const QString program = QStandardPaths::findExecutable(QLatin1String(page.program));
        if (desktops.contains(QLatin1String(page.desktop), Qt::CaseInsensitive) && !program.isEmpty()) {
            QProcess::startDetached(program, page.argument != nullptr
                                                 ? QStringList{QLatin1String(page.argument)}
                                                 : QStringList{});
            return;
        }
    }
    QDesktopServices::openUrl(QUrl::fromLocalFile(qtPath(existingAncestor(m_folder).string())));
}

} // namespace brevlin
