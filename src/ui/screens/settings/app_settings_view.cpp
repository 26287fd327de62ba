#include "ui/screens/settings/app_settings_view.h"

#include "ui/screens/settings/settings_sections.h"
#include "ui/style/scroll_view.h"

#include <QHBoxLayout>
#include <QVBoxLayout>

namespace brevlin {

namespace {

constexpr int screenPadding = 24;
constexpr int sectionSpacing = 24;
constexpr int widestForm = 872; // a title and its control at the ends of a wider row lose each other

} // namespace

AppSettingsView::AppSettingsView(AppModel& model, QWidget* parent) : QWidget(parent)
{
    auto* form = new QWidget;
    form->setMaximumWidth(widestForm);
    auto* column = new QVBoxLayout(form);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(sectionSpacing);
    column->addWidget(new TimerSection(model, form));
    column->addWidget(new AlertSection(model, form));
    column->addWidget(new AppearanceSection(model, form));
    column->addWidget(new ResetSection(model, form));
    column->addWidget(new DataSection(model, form));
    column->addStretch(1);

    auto* content = new QWidget;
    auto* centred = new QHBoxLayout(content);
    centred->setContentsMargins(screenPadding, screenPadding, screenPadding - SlimScrollBar::thickness,
                                screenPadding);
    centred->addWidget(form);

    auto* scroll = new ScrollView(this);
    scroll->setWidget(content);
    content->setAutoFillBackground(false);
    auto* whole = new QVBoxLayout(this);
    whole->setContentsMargins(0, 0, 0, 0);
    whole->addWidget(scroll);
}

} // namespace brevlin
