#include "ui/main/settings_window.h"

#include "app/app_model.h"
#include "app/app_section.h"
#include "platform/window_system.h"
#include "ui/screens/settings/app_settings_view.h"
#include "ui/style/text.h"
#include "ui/style/theme.h"

#include <QApplication>
#include <QCloseEvent>
#include <QPainter>
#include <QShortcut>

namespace brevlin {

namespace {

constexpr QSize windowSize{540, 560};

} // namespace

SettingsWindow::SettingsWindow(AppModel& model, WindowSystem& windowSystem, QWidget* parent)
    : QWidget(parent, Qt::Window), m_model(model), m_windowSystem(windowSystem)
{
    setWindowRole(QStringLiteral("settings"));
    setFixedSize(windowSize);
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
        m_form->resize(windowSize);
        m_form->show();
        setFocus();
        placeOverActiveWindow();
    }
    if (isMinimized()) {
        setWindowState(windowState() & ~Qt::WindowMinimized);
    }
    show();
    raise();
    m_windowSystem.activate(winId(), activationToken);
}

// Where no window of the program is active, the window manager has a better idea.
void SettingsWindow::placeOverActiveWindow()
{
    if (const QWidget* active = QApplication::activeWindow(); active != nullptr && active != this) {
        QRect place(QPoint(), windowSize);
        place.moveCenter(active->frameGeometry().center());
        move(place.topLeft());
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
