#include "ui/screens/history/history_list_accessible.h"

#include "ui/screens/history/history_list.h"

#include <QAccessibleWidget>
#include <QPointer>

#include <algorithm>
#include <map>

namespace brevlin {

namespace {

/// One row, or a day's heading. It stands for its place in the list, not for what is there at the moment.
class AccessibleHistoryLine final : public QAccessibleInterface
{
public:
    AccessibleHistoryLine(HistoryList& list, QAccessible::Role role, std::size_t place)
        : m_list(&list), m_role(role), m_place(place)
    {}

    bool isValid() const override
    {
        return m_list && m_place < (isHeading() ? m_list->days().size() : m_list->rowCount());
    }
    QObject* object() const override { return nullptr; }
    QAccessible::Role role() const override { return m_role; }
    QAccessibleInterface* parent() const override
    {
        return QAccessible::queryAccessibleInterface(m_list.data());
    }
    int childCount() const override { return 0; }
    QAccessibleInterface* child(int /*index*/) const override { return nullptr; }
    QAccessibleInterface* childAt(int /*x*/, int /*y*/) const override { return nullptr; }
    int indexOfChild(const QAccessibleInterface* /*child*/) const override { return -1; }
    QString text(QAccessible::Text kind) const override
    {
        if (kind != QAccessible::Name || !isValid()) {
            return {};
        }
        return isHeading() ? m_list->spokenHeading(m_place) : m_list->spokenText(m_place);
    }
    void setText(QAccessible::Text /*kind*/, const QString& /*text*/) override {}
    QRect rect() const override
    {
        const QRect place = placeInViewport();
        return {m_list->viewport()->mapToGlobal(place.topLeft()), place.size()};
    }
    QAccessible::State state() const override
    {
        QAccessible::State state;
        state.focusable = !isHeading();
        state.focused = !isHeading() && m_list->hasFocus() && m_list->currentRow() == m_place;
        state.selectable = !isHeading();
        state.selected = !isHeading() && isValid() && m_list->isChosen(m_place);
        state.offscreen = !m_list->viewport()->rect().intersects(placeInViewport());
        state.invisible = state.offscreen;
        return state;
    }

private:
    bool isHeading() const { return m_role == QAccessible::Heading; }
    QRect placeInViewport() const
    {
        return isHeading() ? m_list->headingRect(m_place) : m_list->rowRect(m_place);
    }

    QPointer<HistoryList> m_list;
    QAccessible::Role m_role;
    std::size_t m_place;
};

/// Among the lines of the list, where each day begins with its heading.
int lineOfRow(const HistoryList& list, std::size_t row)
{
    const auto& days = list.days();
    const auto next =
        std::upper_bound(days.begin(), days.end(), row,
                         [](std::size_t wanted, const HistoryDay& day) { return wanted < day.first; });
    return static_cast<int>(row) + static_cast<int>(next - days.begin());
}

/// The list. Lines are made when they are asked for and kept, because clients remember them.
class AccessibleHistoryList final : public QAccessibleWidget
{
public:
    explicit AccessibleHistoryList(HistoryList* list)
        : QAccessibleWidget(list, QAccessible::List), m_list(list)
    {}
    ~AccessibleHistoryList() override
    {
        for (const Lines* lines : {&m_rows, &m_headings}) {
            for (const auto& [place, identifier] : *lines) {
                QAccessible::deleteAccessibleInterface(identifier);
            }
        }
    }

    int childCount() const override { return static_cast<int>(m_list->rowCount() + m_list->days().size()); }
    QAccessibleInterface* child(int index) const override
    {
        if (index < 0 || index >= childCount()) {
            return nullptr;
        }
        const auto& days = m_list->days();
        const auto wanted = static_cast<std::size_t>(index);
        const auto beginsByThen = [&](const HistoryDay& day) {
            return day.first + static_cast<std::size_t>(&day - days.data()) <= wanted;
        };
        const auto next = std::partition_point(days.begin(), days.end(), beginsByThen);
        const auto day = static_cast<std::size_t>(next - days.begin()) - 1;
        return wanted == days[day].first + day ? line(m_headings, QAccessible::Heading, day)
                                               : line(m_rows, QAccessible::ListItem, wanted - day - 1);
    }
    int indexOfChild(const QAccessibleInterface* child) const override
    {
        for (const auto& [row, identifier] : m_rows) {
            if (QAccessible::accessibleInterface(identifier) == child) {
                return row < m_list->rowCount() ? lineOfRow(*m_list, row) : -1;
            }
        }
        for (const auto& [day, identifier] : m_headings) {
            if (QAccessible::accessibleInterface(identifier) == child) {
                return day < m_list->days().size() ? static_cast<int>(m_list->days()[day].first + day) : -1;
            }
        }
        return -1;
    }
    QAccessibleInterface* childAt(int x, int y) const override
    {
        const auto row = m_list->rowAt(m_list->viewport()->mapFromGlobal(QPoint(x, y)));
        return row ? this->row(*row) : nullptr;
    }
    QAccessibleInterface* focusChild() const override
    {
        const auto row = m_list->currentRow();
        return row && m_list->hasFocus() ? this->row(*row) : nullptr;
    }

private:
    using Lines = std::map<std::size_t, QAccessible::Id>; // those that were asked for

    QAccessibleInterface* row(std::size_t row) const { return line(m_rows, QAccessible::ListItem, row); }
    QAccessibleInterface* line(Lines& lines, QAccessible::Role role, std::size_t place) const
    {
        auto found = lines.find(place);
        if (found == lines.end()) {
            auto* made = new AccessibleHistoryLine(*m_list, role, place);
            found = lines.emplace(place, QAccessible::registerAccessibleInterface(made)).first;
        }
        return QAccessible::accessibleInterface(found->second);
    }

    HistoryList* m_list;
    mutable Lines m_rows;
    mutable Lines m_headings;
};

QAccessibleInterface* makeInterface(const QString& /*key*/, QObject* object)
{
    auto* list = qobject_cast<HistoryList*>(object);
    return list != nullptr ? new AccessibleHistoryList(list) : nullptr;
}

} // namespace

void installHistoryAccessibility()
{
    QAccessible::installFactory(makeInterface);
}

void tellFocusedHistoryRow(HistoryList& list, std::size_t row)
{
    if (!QAccessible::isActive() || !list.hasFocus()) {
        return;
    }
    QAccessibleEvent event(&list, QAccessible::Focus);
    event.setChild(lineOfRow(list, row));
    QAccessible::updateAccessibility(&event);
}

} // namespace brevlin
