#include "ui/screens/settings/app_settings_view.h"

#include "app/app_model.h"
#include "ui/controls/scroll_view.h"
#include "ui/screens/settings/settings_sections.h"
#include "ui/screens/settings/shortcuts_section.h"

#include <QHBoxLayout>
#include <QVBoxLayout>

namespace brevlin {

namespace {

constexpr int screenPadding = 24;
constexpr int sectionSpacing = 26;
constexpr int widestForm = 880; // a title and its control at the ends of a wider row lose each other

} // namespace

AppSettingsView::AppSettingsView(AppModel& model, QWidget* parent) : QWidget(parent)
{
    auto* form = new QWidget;
    form->setMaximumWidth(widestForm);
    auto* column = new QVBoxLayout(form);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(sectionSpacing - CardSurface::shadowMargins.bottom());
    column->addWidget(new TimerSection(model, form));
    column->addWidget(new AlertSection(model, model.announcer(), form));
    column->addWidget(new AppearanceSection(model, model.launchAtLogin(), form));
    column->addWidget(new ShortcutsSection(model, form));
    column->addWidget(new HooksSection(model, form));
    column->addWidget(new ResetSection(model, form));
    column->addWidget(new DataSection(model, form));
    column->addStretch(1);

    auto* content = new QWidget;
    auto* centred = new QHBoxLayout(content);
    const QMargins shadow = CardSurface::shadowMargins;
    centred->setContentsMargins(screenPadding - shadow.left(), screenPadding,
                                screenPadding - shadow.right() - SlimScrollBar::thickness,
                                screenPadding - shadow.bottom());
    centred->addWidget(form);

    auto* scroll = new ScrollView(this);
    scroll->setWidget(content);
    content->setAutoFillBackground(false);
    auto* whole = new QVBoxLayout(this);
    whole->setContentsMargins(0, 0, 0, 0);
    whole->addWidget(scroll);
}

} // namespace brevlin
