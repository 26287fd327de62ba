#include "ui/controls/accessibility.h"

#include "ui/controls/numeric_text.h"
#include "ui/controls/plain_button.h"
#include "ui/controls/segmented_picker.h"
#include "ui/controls/switch_control.h"

#include <QAccessibleObject>
#include <QAccessibleWidget>
#include <QApplication>
#include <QMenu>

namespace brevlin {

namespace {

/// A button in one of the roles that Qt gives to its own classes only.
class AccessibleButton : public QAccessibleWidget
{
public:
    AccessibleButton(PlainButton* button, QAccessible::Role buttonRole)
        : QAccessibleWidget(button, buttonRole), m_button(button)
    {}

    QString text(QAccessible::Text kind) const override
    {
        const QString text = QAccessibleWidget::text(kind);
        return kind == QAccessible::Name && text.isEmpty() ? m_button->text() : text;
    }

    QAccessible::State state() const override
    {
        QAccessible::State state = QAccessibleWidget::state();
        state.checkable = m_button->isCheckable();
        state.checked = m_button->isChecked();
        return state;
    }

    QStringList actionNames() const override
    {
        return QStringList{action()} + QAccessibleWidget::actionNames();
    }

    void doAction(const QString& name) override
    {
        if (name == action())
            m_button->click();
        else
            QAccessibleWidget::doAction(name);
    }

private:
    const QString& action() const { return m_button->isCheckable() ? toggleAction() : pressAction(); }

    PlainButton* m_button;
};

class AccessibleSelectableButton final : public AccessibleButton
{
public:
    explicit AccessibleSelectableButton(SelectableButton* button)
        : AccessibleButton(button, QAccessible::PageTab), m_button(button)
    {}

    QAccessible::State state() const override
    {
        QAccessible::State state = AccessibleButton::state();
        state.selectable = true;
        state.selected = m_button->isSelected();
        state.focusable = true; // the arrow keys come to the others
        return state;
    }

private:
    SelectableButton* m_button;
};

class AccessibleNumericText final : public QAccessibleWidget
{
public:
    explicit AccessibleNumericText(NumericText* widget)
        : QAccessibleWidget(widget, QAccessible::StaticText), m_widget(widget)
    {}

    QString text(QAccessible::Text kind) const override
    {
        const QString text = QAccessibleWidget::text(kind);
        return kind == QAccessible::Name && text.isEmpty() ? m_widget->text() : text;
    }

private:
    NumericText* m_widget;
};

/// What only holds other elements. Qt calls it a border or a client area, and a screen reader takes the first
/// for a window that is not active, so that it drops all that happens inside.
QAccessible::Role containerRole(const QWidget& widget)
{
    if (!widget.isWindow()) {
        return QAccessible::Grouping;
    }
    return widget.windowType() == Qt::Dialog ? QAccessible::Dialog : QAccessible::Window;
}

/// Qt leaves popups out of the application's children, so that nobody would find what stands in one. Menus
/// are found by the events that they send.
class AccessibleApplication final : public QAccessibleApplication
{
public:
    int childCount() const override
    {
        return QAccessibleApplication::childCount() + static_cast<int>(popups().size());
    }
    QAccessibleInterface* child(int index) const override
    {
        const int windows = QAccessibleApplication::childCount();
        const QWidgetList found = popups();
        return index >= windows && index - windows < found.size()
                   ? QAccessible::queryAccessibleInterface(found[index - windows])
                   : QAccessibleApplication::child(index);
    }
    int indexOfChild(const QAccessibleInterface* child) const override
    {
        const auto index = popups().indexOf(qobject_cast<QWidget*>(child->object()));
        return index >= 0 ? QAccessibleApplication::childCount() + static_cast<int>(index)
                          : QAccessibleApplication::indexOfChild(child);
    }

private:
    static QWidgetList popups()
    {
        QWidgetList found = QApplication::topLevelWidgets();
        found.removeIf([](const QWidget* widget) {
            return widget->windowType() != Qt::Popup || !widget->isVisible() ||
                   qobject_cast<const QMenu*>(widget) != nullptr;
        });
        return found;
    }
};

QAccessibleInterface* makeInterface(const QString& className, QObject* object)
{
    if (object == qApp)
        return new AccessibleApplication;
    if (auto* button = qobject_cast<SelectableButton*>(object))
        return new AccessibleSelectableButton(button);
    if (auto* control = qobject_cast<SwitchControl*>(object))
        return new AccessibleButton(control, QAccessible::CheckBox);
    if (auto* segment = qobject_cast<Segment*>(object))
        return new AccessibleButton(segment, QAccessible::RadioButton);
    if (auto* picker = qobject_cast<SegmentedPicker*>(object))
        return new QAccessibleWidget(picker, QAccessible::Grouping);
    if (auto* text = qobject_cast<NumericText*>(object))
        return new AccessibleNumericText(text);
    // Asked for each class from the most special on: nobody knew better what it is.
    auto* widget = qobject_cast<QWidget*>(object);
    if (widget != nullptr && (className == QLatin1String("QWidget") || className == QLatin1String("QFrame")))
        return new QAccessibleWidget(widget, containerRole(*widget));
    return nullptr;
}

} // namespace

void installAccessibility()
{
    QAccessible::installFactory(makeInterface);
}

} // namespace brevlin
