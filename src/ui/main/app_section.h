#pragma once

#include "core/language.h"
#include "core/raw_value.h"

#include <QObject>
#include <QString>

#include <array>
#include <string_view>
#include <utility>

namespace brevlin {

class MainWindowStore;

/// The screens of the main window.
enum class AppSection { timer, history, statistics, settings, about };

template <>
struct RawValues<AppSection>
{
    static constexpr std::array cases{
        RawValueCase<AppSection>{AppSection::timer, "timer"},
        RawValueCase<AppSection>{AppSection::history, "history"},
        RawValueCase<AppSection>{AppSection::statistics, "statistics"},
        RawValueCase<AppSection>{AppSection::settings, "settings"},
        RawValueCase<AppSection>{AppSection::about, "about"},
    };
};

std::string_view title(AppSection section, AppLanguage language);

/// The section that the main window shows, remembered across runs. Written at once when it changes; where it
/// cannot be written the choice holds for this run.
class SectionSelection final : public QObject
{
    Q_OBJECT

public:
    explicit SectionSelection(MainWindowStore& store, QObject* parent = nullptr);

    AppSection section() const { return m_section; }
    void select(AppSection section);
    /// The history, of which only what this text finds.
    void showHistory(const QString& filter);
    /// What the history is to be filtered by; once.
    QString takeFilter() { return std::exchange(m_filter, {}); }

Q_SIGNALS:
    void sectionChanged();

private:
    MainWindowStore& m_store;
    AppSection m_section = AppSection::timer;
    QString m_filter;
};

} // namespace brevlin
