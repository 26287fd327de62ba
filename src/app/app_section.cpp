#include "app/app_section.h"

#include "storage/section_store.h"

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

SectionSelection::SectionSelection(UserDefaults& defaults, QObject* parent)
    : QObject(parent), m_defaults(defaults)
{
    const auto stored = loadSection(defaults);
    m_section = stored ? fromRawValue<AppSection>(*stored).value_or(AppSection::timer) : AppSection::timer;
}

void SectionSelection::select(AppSection section)
{
    if (m_section == section) {
        return;
    }
    m_section = section;
    saveSection(m_defaults, rawValue(section));
    Q_EMIT sectionChanged();
}

} // namespace brevlin
