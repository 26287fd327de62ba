#include "ui/main/settings_window.h"

#include "app/app_model.h"
#include "platform/window_system.h"
#include "ui/main/app_section.h"
#include "ui/screens/settings/app_settings_view.h"
#include "ui/style/text.h"
#include "ui/style/theme.h"

#include <QApplication>
#include <QCloseEvent>
#include <QPainter>
#include <QScreen>
#include <QShortcut>
#include <QWindow>

#include <algorithm>

namespace brevlin {

namespace {

constexpr QSize windowSize{540, 560};
// The window manager's frame, which is not known before it has framed the window.
constexpr QSize frameRoom{12, 42};

} // namespace

SettingsWindow::SettingsWindow(AppModel& model, WindowSystem& windowSystem, QWidget* parent)
    : QWidget(parent, Qt::Window), m_model(model), m_windowSystem(windowSystem)
{
    setWindowRole(QStringLiteral("settings"));
    // Holds the keyboard until Tab moves it, and takes it back from a number when something else is clicked.
    setFocusPolicy(Qt::ClickFocus);
    const auto add = [this](const QKeySequence& keys, auto action) {
        connect(new QShortcut(keys, this), &QShortcut::activated, this, action);
    };
    add(QKeySequence(Qt::Key_Escape), &QWidget::close);
    add(QKeySequence(Qt::CTRL | Qt::Key_W), &QWidget::close);
    add(QKeySequence(Qt::CTRL | Qt::Key_Q), &SettingsWindow::quitRequested);
    connect(&model, &AppModel::preferencesChanged, this, &SettingsWindow::refreshTitle);
    refreshTitle();
}

void SettingsWindow::refreshTitle()
{
    setWindowTitle(qtText(title(AppSection::settings, m_model.language())));
}

void SettingsWindow::present(const std::string& activationToken)
{
    if (m_form == nullptr) {
        m_form = new AppSettingsView(m_model, this);
        fitScreen();
        m_form->show();
        setFocus();
    }
    if (isMinimized()) {
        setWindowState(windowState() & ~Qt::WindowMinimized);
    }
    show();
    raise();
    m_windowSystem.activate(winId(), activationToken);
}

// Over the program's active window; where there is none, the window manager has a better idea. On a desktop
// that is too low for the whole of it the form is scrolled.
void SettingsWindow::fitScreen()
{
    const QWidget* active = QApplication::activeWindow();
    const bool isBesideOther = active != nullptr && active != this;
    const QRect available = (isBesideOther ? active->screen() : screen())->availableGeometry();
    setFixedSize(windowSize.boundedTo(available.size() - frameRoom));
    m_form->resize(size());
    if (isBesideOther && !m_windowSystem.tellsPlaces()) {
        winId(); // makes the handle
        windowHandle()->setTransientParent(active->windowHandle());
    } else if (isBesideOther) {
        QRect place(QPoint(), size());
        place.moveCenter(active->frameGeometry().center());
        const int lowest = available.bottom() + 1 - height() - frameRoom.height();
        move(std::clamp(place.left(), available.left(), available.right() + 1 - width() - frameRoom.width()),
             std::clamp(place.top(), available.top(), lowest));
    }
}

void SettingsWindow::closeEvent(QCloseEvent* event)
{
    QWidget::closeEvent(event);
    hide(); // before the form goes, so that a number that is being typed is finished
    if (m_form != nullptr) {
        m_form->deleteLater();
        m_form = nullptr;
    }
}

void SettingsWindow::paintEvent(QPaintEvent* /*event*/)
{
    QPainter(this).fillRect(rect(), Theme::of(*this).color(ThemeColor::canvas));
}

} // namespace brevlin
