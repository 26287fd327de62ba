#include "ui/screens/statistics/accessible_activity.h"

#include "ui/screens/statistics/activity_chart.h"

#include <QAccessibleWidget>
#include <QPointer>

#include <map>

namespace brevlin {

namespace {

/// The bar or cell at one place of a chart, whatever the chart shows there at the time. It may be asked after
/// its chart is gone or shows fewer elements, and is then invalid.
class AccessibleElement final : public QAccessibleInterface
{
public:
    AccessibleElement(ActivityChart* chart, std::size_t index) : m_chart(chart), m_index(index) {}

    bool isValid() const override { return m_chart && m_index < m_chart->picture().elements.size(); }
    QObject* object() const override { return nullptr; }
    QAccessibleInterface* parent() const override
    {
        return QAccessible::queryAccessibleInterface(m_chart.data());
    }
    QAccessibleInterface* child(int /*index*/) const override { return nullptr; }
    QAccessibleInterface* childAt(int /*x*/, int /*y*/) const override { return nullptr; }
    int childCount() const override { return 0; }
    int indexOfChild(const QAccessibleInterface* /*child*/) const override { return -1; }
    QAccessible::Role role() const override { return QAccessible::ListItem; }
    QString text(QAccessible::Text kind) const override
    {
        return kind == QAccessible::Name && isValid() ? m_chart->spokenText(m_index) : QString();
    }
    void setText(QAccessible::Text /*kind*/, const QString& /*text*/) override {}
    QRect rect() const override
    {
        return isValid() ? QRect(m_chart->mapToGlobal(m_chart->elementRect(m_index).topLeft().toPoint()),
                                 m_chart->elementRect(m_index).size().toSize())
                         : QRect();
    }
    QAccessible::State state() const override
    {
        QAccessible::State state;
        state.invalid = !isValid();
        state.focusable = true;
        state.focused = isValid() && m_chart->hasFocus() && m_chart->currentElement() == m_index;
        state.readOnly = true;
        return state;
    }

private:
    QPointer<ActivityChart> m_chart;
    std::size_t m_index;
};

class AccessibleChart final : public QAccessibleWidget
{
public:
    explicit AccessibleChart(ActivityChart* chart)
        : QAccessibleWidget(chart, QAccessible::List), m_chart(chart)
    {}
    AccessibleChart(const AccessibleChart&) = delete;
    AccessibleChart& operator=(const AccessibleChart&) = delete;
    ~AccessibleChart() override
    {
        for (const auto& [index, id] : m_elements) {
            QAccessible::deleteAccessibleInterface(id);
        }
    }

    int childCount() const override { return static_cast<int>(m_chart->picture().elements.size()); }

    QAccessibleInterface* child(int index) const override
    {
        if (index < 0 || index >= childCount()) {
            return nullptr;
        }
        const auto found = m_elements.find(index);
        if (found != m_elements.end()) {
            return QAccessible::accessibleInterface(found->second);
        }
        auto* element =
            new AccessibleElement(m_chart, static_cast<std::size_t>(index)); // owned by Qt's cache
        m_elements.emplace(index, QAccessible::registerAccessibleInterface(element));
        return element;
    }

    int indexOfChild(const QAccessibleInterface* child) const override
    {
        for (const auto& [index, id] : m_elements) {
            if (QAccessible::accessibleInterface(id) == child) {
                return index;
            }
        }
        return -1;
    }

    QAccessibleInterface* childAt(int x, int y) const override
    {
        const auto index = m_chart->elementAtPosition(m_chart->mapFromGlobal(QPoint(x, y)));
        return index ? child(static_cast<int>(*index)) : nullptr;
    }

    QAccessibleInterface* focusChild() const override
    {
        const auto current = m_chart->currentElement();
        return m_chart->hasFocus() && current ? child(static_cast<int>(*current)) : nullptr;
    }

private:
    ActivityChart* m_chart;
    mutable std::map<int, QAccessible::Id> m_elements; // made as they are asked for
};

QAccessibleInterface* makeInterface(const QString& /*className*/, QObject* object)
{
    auto* chart = qobject_cast<ActivityChart*>(object);
    return chart != nullptr ? new AccessibleChart(chart) : nullptr;
}

} // namespace

void installAccessibleActivity()
{
    QAccessible::installFactory(makeInterface);
}

} // namespace brevlin
