// A client of the timer's interface as another project would have it: generated from the installed
// description.

#include "timer1_interface.h"

#include <QCoreApplication>
#include <QTextStream>
#include <QTimer>

int main(int argc, char** argv)
{
    QCoreApplication application(argc, argv);
    QTextStream out(stdout);
    ComQuillmarkBrevlinTimer1Interface timer(QStringLiteral("com.quillmark.Brevlin"),
                                             QStringLiteral("/com/quillmark/Brevlin"),
                                             QDBusConnection::sessionBus());
    QObject::connect(&timer, &ComQuillmarkBrevlinTimer1Interface::PhaseEnded, &application,
                     [&](const QVariantMap& record) {
                         out << record.value(QStringLiteral("outcome")).toString() << ' '
                             << record.value(QStringLiteral("intention")).toString() << '\n';
                         out.flush();
                         QCoreApplication::quit();
                     });
    auto started = timer.Start({{QStringLiteral("intention"), QStringLiteral("R&D <b>")}});
    started.waitForFinished();
    auto again = timer.Start({});
    again.waitForFinished();
    out << timer.state() << ' ' << timer.canPause() << ' ' << timer.plannedDuration() << ' '
        << again.error().name() << '\n';
    timer.Stop();
    QTimer::singleShot(10'000, &application, [] { QCoreApplication::exit(1); });
    return QCoreApplication::exec();
}
