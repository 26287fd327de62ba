#include "ui/style/accessibility.h"

#include "ui/style/numeric_text.h"
#include "ui/style/plain_button.h"

#include <QAccessibleWidget>

namespace brevlin {

namespace {

class AccessibleSelectableButton final : public QAccessibleWidget
{
public:
    explicit AccessibleSelectableButton(SelectableButton* button)
        : QAccessibleWidget(button, QAccessible::PageTab), m_button(button)
    {}

    QString text(QAccessible::Text kind) const override
    {
        const QString text = QAccessibleWidget::text(kind);
        return kind == QAccessible::Name && text.isEmpty() ? m_button->text() : text;
    }

    QAccessible::State state() const override
    {
        QAccessible::State state = QAccessibleWidget::state();
        state.selectable = true;
        state.selected = m_button->isSelected();
        return state;
    }

    QStringList actionNames() const override
    {
        return QStringList{pressAction()} + QAccessibleWidget::actionNames();
    }

    void doAction(const QString& action) override
    {
        if (action == pressAction())
            m_button->click();
        else
            QAccessibleWidget::doAction(action);
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

QAccessibleInterface* makeInterface(const QString&, QObject* object)
{
    if (auto* button = qobject_cast<SelectableButton*>(object))
        return new AccessibleSelectableButton(button);
    if (auto* text = qobject_cast<NumericText*>(object))
        return new AccessibleNumericText(text);
    return nullptr;
}

} // namespace

void installAccessibility()
{
    QAccessible::installFactory(makeInterface);
}

} // namespace brevlin
