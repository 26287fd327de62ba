#include "ui/controls/accessibility.h"

#include "ui/controls/numeric_text.h"
#include "ui/controls/plain_button.h"
#include "ui/controls/scroll_view.h"
#include "ui/controls/segmented_picker.h"
#include "ui/controls/thin_divider.h"
#include "ui/style/brevlin_mark.h"
#include "ui/style/symbol.h"

#include <QAccessibleObject>
#include <QAccessibleWidget>
#include <QApplication>
#include <QMenu>

namespace brevlin {

namespace {

/// A button in the role that it has for the user.
class AccessibleButton : public QAccessibleWidget
{
public:
    explicit AccessibleButton(PlainButton* button)
        : QAccessibleWidget(button, button->role()), m_button(button)
    {}

    QString text(QAccessible::Text kind) const override
    {
        const QString text = QAccessibleWidget::text(kind);
        if (kind == QAccessible::Name && text.isEmpty()) {
            return m_button->text();
        }
        // Qt describes it by its tool tip, which would say the name again.
        return kind == QAccessible::Description && text == this->text(QAccessible::Name) ? QString() : text;
    }

    QAccessible::State state() const override
    {
        QAccessible::State state = QAccessibleWidget::state();
        state.checkable = m_button->isCheckable();
        state.checked = m_button->isChecked();
        state.pressed = m_button->isDown();
        // Of a row, which is one stop of Tab, the arrow keys come to the others.
        state.focusable = state.focusable || m_button->standsInRow();
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
    explicit AccessibleSelectableButton(SelectableButton* button) : AccessibleButton(button), m_button(button)
    {}

    QAccessible::State state() const override
    {
        QAccessible::State state = AccessibleButton::state();
        state.selectable = true;
        state.selected = m_button->isSelected();
        return state;
    }

private:
    SelectableButton* m_button;
};

/// What only the eye needs.
class AccessibleDecoration final : public QAccessibleWidget
{
public:
    explicit AccessibleDecoration(QWidget* widget) : QAccessibleWidget(widget, QAccessible::Graphic) {}

    QAccessible::State state() const override
    {
        QAccessible::State state = QAccessibleWidget::state();
        state.invisible = true;
        return state;
    }
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

bool isDecoration(const QObject* object)
{
    return qobject_cast<const ThinDivider*>(object) != nullptr ||
           qobject_cast<const SymbolView*>(object) != nullptr ||
           qobject_cast<const PhaseIconView*>(object) != nullptr ||
           qobject_cast<const BrevlinLogoView*>(object) != nullptr;
}

/// What only holds other elements. Qt calls it a border or a client area, and a screen reader takes the first
/// for a window that is not active, so that it drops all that happens inside.
QAccessible::Role containerRole(const QWidget& widget)
{
    if (!widget.isWindow()) {
        return QAccessible::Grouping;
    }
    return widget.windowType() == Qt::Dialog ? QAccessible::Dialog : QAccessible::Window;
}

class AccessibleContainer final : public QAccessibleWidget
{
public:
    explicit AccessibleContainer(QWidget* widget) : QAccessibleWidget(widget, containerRole(*widget)) {}

    QAccessible::State state() const override
    {
        QAccessible::State state = QAccessibleWidget::state();
        state.focused = state.focused && widget()->focusProxy() == nullptr; // its control has it
        return state;
    }
};

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
    if (auto* button = qobject_cast<PlainButton*>(object))
        return new AccessibleButton(button);
    if (auto* picker = qobject_cast<SegmentedPicker*>(object))
        return new QAccessibleWidget(picker, QAccessible::Grouping);
    if (auto* text = qobject_cast<NumericText*>(object))
        return new AccessibleNumericText(text);
    if (auto* view = qobject_cast<ScrollView*>(object))
        return new QAccessibleWidget(view, QAccessible::Grouping);
    if (isDecoration(object))
        return new AccessibleDecoration(static_cast<QWidget*>(object));
    // Asked for each class from the most special on: nobody knew better what it is.
    auto* widget = qobject_cast<QWidget*>(object);
    if (widget != nullptr && (className == QLatin1String("QWidget") || className == QLatin1String("QFrame")))
        return new AccessibleContainer(widget);
    return nullptr;
}

} // namespace

void installAccessibility()
{
    QAccessible::installFactory(makeInterface);
}

} // namespace brevlin
