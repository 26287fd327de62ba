#include "ui/main/app_section.h"

#include "storage/main_window_store.h"

namespace brevlin {

std::string_view title(AppSection section, AppLanguage language)
{
    static constexpr std::array<BilingualText, 5> texts{{
        {"专注", "Focus"},
        {"记录", "History"},
        {"统计", "Statistics"},
        {"设置", "Settings"},
        {"关于", "About"},
    }};
    return texts.at(static_cast<std::size_t>(section)).in(language);
}

SectionSelection::SectionSelection(MainWindowStore& store, QObject* parent) : QObject(parent), m_store(store)
{
    const auto stored = store.section();
    m_section = stored ? fromRawValue<AppSection>(*stored).value_or(AppSection::timer) : AppSection::timer;
}

void SectionSelection::select(AppSection section)
{
    if (m_section == section) {
        return;
    }
    m_section = section;
    // A choice that cannot be written holds for this run.
    [[maybe_unused]] const auto saved = m_store.saveSection(rawValue(section));
    Q_EMIT sectionChanged();
}

void SectionSelection::showHistory(const QString& filter)
{
    m_filter = filter;
    select(AppSection::history);
}

} // namespace brevlin
