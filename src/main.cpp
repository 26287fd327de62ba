#include "application.h"
#include "composition.h"
#include "native_windows.h"
#include "platform/freedesktop/bus/bus_start.h"
#include "platform/freedesktop/files/program_files.h"
#include "platform/freedesktop/files/user_folders.h"
#include "platform/freedesktop/session/application_instance.h"
#include "platform/freedesktop/wayland/display_choice.h"
#include "platform/freedesktop/x11/x11_connection.h"
#include "start_refusal.h"
#include "ui/controls/accessibility.h"
#include "ui/style/typography.h"

#include <sys/prctl.h>

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <string_view>

using namespace brevlin;

namespace {

/// Whether it is there. Qt does not get to see it.
bool takeOption(int& argc, char** argv, std::string_view option)
{
    char** const end = argv + argc;
    char** const found = std::find_if(argv, end, [option](const char* each) { return each == option; });
    if (found == end) {
        return false;
    }
    std::rotate(found, found + 1, end);
    argv[--argc] = nullptr;
    return true;
}

void takeDisplay()
{
    const QByteArray wish = qgetenv(platformVariable);
    const QByteArray qtPlatform = qgetenv("QT_QPA_PLATFORM");
    const DisplayChoice choice =
        chooseDisplay({wish.toStdString(), qtPlatform.toStdString(), !qEnvironmentVariableIsEmpty("DISPLAY"),
                       !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY"), canBeNative});
    if (!choice.complaint.empty()) {
        std::fprintf(stderr, "Brevlin: %s\n", choice.complaint.c_str());
    }
    if (choice.platform != Platform::byQt) {
        qputenv("QT_QPA_PLATFORM", choice.platform == Platform::wayland ? "wayland" : "xcb");
    }
}

} // namespace

int main(int argc, char** argv)
{
    // A limit on the size of files is to be an error that the user is told of, not the end of the program.
    std::signal(SIGXFSZ, SIG_IGN);
    // Under the name that people know it by.
    prctl(PR_SET_NAME, "brevlin");
    takeDisplay();
    const bool isInBackground = takeOption(argc, argv, backgroundOption);
    const QString token = launchToken();
    BusStart buses;
    buses.applicationIsToBeMade();
    qInstallMessageHandler(refuseWithoutDisplay);
    Application application(argc, argv);
    qInstallMessageHandler(nullptr);
    buses.applicationIsMade(X11Connection().accessibilityBus());
    QApplication::setApplicationName(QStringLiteral("Brevlin"));
    QApplication::setApplicationVersion(QStringLiteral(BREVLIN_VERSION));
    QApplication::setDesktopFileName(QStringLiteral("com.quillmark.Brevlin"));
    QApplication::setQuitOnLastWindowClosed(false);

    const UserFolders folders = userFolders();
    ApplicationInstance instance(buses.session(), {folders.data, folders.preferences}, folders.runtime);
    switch (instance.claim(
        {isInBackground ? QString::fromLatin1(InstanceRequest::background) : QString(), token})) {
    case ApplicationInstance::Claim::first:
        break;
    case ApplicationInstance::Claim::activated:
        return 0;
    case ApplicationInstance::Claim::unreachable:
        showStartRefusal({"Brevlin 已在运行，但没有响应。",
                          "Brevlin is running already for this user, but it does not answer."},
                         {});
        return 1;
    case ApplicationInstance::Claim::failed:
        showStartRefusal({"无法确认是否已有另一个 Brevlin 在使用同一文件夹。",
                          "Brevlin cannot make sure that no other one works on the same folder."},
                         instance.failure());
        return 1;
    }

    installFonts();
    installAccessibility();
    const Composition composition(application, buses, folders, instance,
                                  isInBackground ? FirstShow::whenAsked : FirstShow::atOnce);
    return QApplication::exec();
}
