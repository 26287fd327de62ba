#include "ui/tray/tray_texts.h"

#include "app/app_model.h"
#include "app/timer_words.h"
#include "core/time_text.h"
#include "ui/main/app_section.h"

namespace brevlin {

namespace {

constexpr BilingualText pausedText{"已暂停", "Paused"};
constexpr BilingualText ringingText{"等待开始", "Ready to start"};
constexpr BilingualText openPanelText{"打开面板", "Open Panel"};
constexpr BilingualText quitText{"退出 Brevlin", "Quit Brevlin"};

std::string phaseTitle(const AppModel& model)
{
    return std::string(title(model.snapshot().phase, model.language()));
}

std::string clockLine(const AppModel& model)
{
    std::string line = phaseTitle(model) + " · " + TimeText::clock(model.remainingSeconds());
    const auto with = [&](const BilingualText& state) {
        return line + " · " + std::string(state.in(model.language()));
    };
    switch (model.snapshot().runState) {
    case TimerRunState::paused:
        return with(pausedText);
    case TimerRunState::ringing:
        return with(ringingText);
    case TimerRunState::idle:
    case TimerRunState::running:
        break;
    }
    return line;
}

StatusMenuRow sectionRow(AppSection section, AppLanguage language)
{
    return {std::string(rawValue(section)), std::string(title(section, language))};
}

} // namespace

StatusTexts trayTexts(const AppModel& model)
{
    const std::string name =
        "Brevlin, " + phaseTitle(model) + ", " + TimeText::clock(model.remainingSeconds());
    const std::string intention = model.snapshot().intention.value_or(std::string{});
    const std::string detail = intention.empty() ? clockLine(model) : clockLine(model) + "\n" + intention;
    return {model.menuBarTitle(), name, "Brevlin", detail};
}

std::vector<StatusMenuRow> trayRows(const AppModel& model)
{
    const AppLanguage language = model.language();
    const StatusMenuRow separator;
    return {
        {std::string(clockRow), clockLine(model), false, true},
        separator,
        {std::string(openPanelRow), std::string(openPanelText.in(language))},
        {std::string(primaryActionRow),
         TimerWords::primaryAction(model.snapshot().phase, model.snapshot().runState, language)},
        separator,
        sectionRow(AppSection::history, language),
        sectionRow(AppSection::statistics, language),
        sectionRow(AppSection::settings, language),
        sectionRow(AppSection::about, language),
        separator,
        {std::string(quitRow), std::string(quitText.in(language))},
    };
}

} // namespace brevlin
