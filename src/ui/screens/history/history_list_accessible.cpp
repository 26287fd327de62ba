#include "ui/screens/history/history_list_accessible.h"

#include "ui/screens/history/history_list.h"

#include <QAccessibleWidget>
#include <QPointer>

#include <map>

namespace brevlin {

namespace {

/// One row. It stands for its place in the list, not for the record that is there at the moment.
class AccessibleHistoryRow final : public QAccessibleInterface
{
public:
    AccessibleHistoryRow(HistoryList& list, std::size_t row) : m_list(&list), m_row(row) {}

    bool isValid() const override { return m_list && m_row < m_list->rowCount(); }
    QObject* object() const override { return nullptr; }
    QAccessible::Role role() const override { return QAccessible::ListItem; }
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
        return kind == QAccessible::Name && isValid() ? m_list->spokenText(m_row) : QString();
    }
    void setText(QAccessible::Text /*kind*/, const QString& /*text*/) override {}
    QRect rect() const override
    {
        const QRect place = m_list->rowRect(m_row);
        return {m_list->viewport()->mapToGlobal(place.topLeft()), place.size()};
    }
    QAccessible::State state() const override
    {
        QAccessible::State state;
        state.focusable = true;
        state.focused = m_list->hasFocus() && m_list->currentRow() == m_row;
        state.offscreen = !m_list->viewport()->rect().intersects(m_list->rowRect(m_row));
        state.invisible = state.offscreen;
        return state;
    }

private:
    QPointer<HistoryList> m_list;
    std::size_t m_row;
};

/// The list. Rows are made when they are asked for and kept, because clients remember them.
class AccessibleHistoryList final : public QAccessibleWidget
{
public:
    explicit AccessibleHistoryList(HistoryList* list)
        : QAccessibleWidget(list, QAccessible::List), m_list(list)
    {}
    ~AccessibleHistoryList() override
    {
        for (const auto& [row, identifier] : m_rows) {
            QAccessible::deleteAccessibleInterface(identifier);
        }
    }

    int childCount() const override { return static_cast<int>(m_list->rowCount()); }
    QAccessibleInterface* child(int index) const override
    {
        if (index < 0 || index >= childCount()) {
            return nullptr;
        }
        auto found = m_rows.find(index);
        if (found == m_rows.end()) {
            auto* row = new AccessibleHistoryRow(*m_list, static_cast<std::size_t>(index));
            found = m_rows.emplace(index, QAccessible::registerAccessibleInterface(row)).first;
        }
        return QAccessible::accessibleInterface(found->second);
    }
    int indexOfChild(const QAccessibleInterface* child) const override
    {
        for (const auto& [row, identifier] : m_rows) {
            if (QAccessible::accessibleInterface(identifier) == child) {
                return row;
            }
        }
        return -1;
    }
    QAccessibleInterface* childAt(int x, int y) const override
    {
        const auto row = m_list->rowAt(m_list->viewport()->mapFromGlobal(QPoint(x, y)));
        return row ? child(static_cast<int>(*row)) : nullptr;
    }
    QAccessibleInterface* focusChild() const override
    {
        const auto row = m_list->currentRow();
        return row && m_list->hasFocus() ? child(static_cast<int>(*row)) : nullptr;
    }

private:
    HistoryList* m_list;
    mutable std::map<int, QAccessible::Id> m_rows; // those that were asked for
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
    event.setChild(static_cast<int>(row));
    QAccessible::updateAccessibility(&event);
}

} // namespace brevlin
