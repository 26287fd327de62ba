#include "application.h"

#include <QEvent>
#include <QMetaMethod>

namespace brevlin {

bool Application::event(QEvent* event)
{
    if (event->type() != QEvent::Quit ||
        !isSignalConnected(QMetaMethod::fromSignal(&Application::endRequested))) {
        return QApplication::event(event);
    }
    event->accept();
    Q_EMIT endRequested();
    return true;
}

} // namespace brevlin
