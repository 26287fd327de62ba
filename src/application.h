#pragma once

#include <QApplication>

namespace brevlin {

/// The application object. Who asks it to quit (the session manager at the end of the session, the platform,
/// QApplication::quit) reaches the composition, which ends the program in order; Qt would ask every window to
/// close instead, and those only hide. https://www.x.org/releases/X11R7.7/doc/libSM/xsmp.html, "Die"
class Application final : public QApplication
{
    Q_OBJECT

public:
    using QApplication::QApplication;

Q_SIGNALS:
    /// Without a listener (no composition yet) Qt does what it would.
    void endRequested();

protected:
    bool event(QEvent* event) override;
};

} // namespace brevlin
