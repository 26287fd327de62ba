#include "ui/controls/spoken_element.h"

#include <QAccessibleObject>
#include <QAccessibleWidget>
#include <QLabel>
#include <QObject>

#include <utility>

namespace brevlin {

namespace {

constexpr const char* announcementName = "brevlin-announcement";
constexpr const char* keeperName = "brevlin-spoken-element";

/// Holds the name's source as a child of the widget, where the factory finds it.
class NameKeeper final : public QObject
{
public:
    NameKeeper(QAccessible::Role elementRole, std::function<QString()> source, bool isGroup, QObject* parent)
        : QObject(parent), role(elementRole), name(std::move(source)), hasChildren(isGroup)
    {
        setObjectName(QLatin1String(keeperName));
    }

    QAccessible::Role role;
    std::function<QString()> name;
    std::function<QString()> description;
    bool hasChildren;
};

class SpokenElement final : public QAccessibleWidget
{
public:
    SpokenElement(QWidget* widget, const NameKeeper& keeper)
        : QAccessibleWidget(widget, keeper.role), m_keeper(keeper)
    {}

    QString text(QAccessible::Text text) const override
    {
        if (text == QAccessible::Description && m_keeper.description) {
            return m_keeper.description();
        }
        return text == QAccessible::Name && m_keeper.name ? m_keeper.name() : QAccessibleWidget::text(text);
    }
    QAccessible::State state() const override
    {
        QAccessible::State state = QAccessibleWidget::state();
        state.invisible = state.invisible || !m_keeper.name;
        return state;
    }
    int childCount() const override { return m_keeper.hasChildren ? QAccessibleWidget::childCount() : 0; }
    QAccessibleInterface* child(int index) const override
    {
        return m_keeper.hasChildren ? QAccessibleWidget::child(index) : nullptr;
    }
    QAccessibleInterface* childAt(int x, int y) const override
    {
        return m_keeper.hasChildren ? QAccessibleWidget::childAt(x, y) : nullptr;
    }

private:
    const NameKeeper& m_keeper; // lives as long as the widget
};

/// What was announced last in the widget, its parent.
class Announcement final : public QObject
{
public:
    using QObject::QObject;

    QString text;
};

/// A notification that appears; a screen reader says such once. It is no element of the window.
class AccessibleAnnouncement final : public QAccessibleObject
{
public:
    explicit AccessibleAnnouncement(Announcement* announcement)
        : QAccessibleObject(announcement), m_announcement(announcement)
    {}

    QAccessible::Role role() const override { return QAccessible::Notification; }
    QAccessible::State state() const override { return {}; }
    QString text(QAccessible::Text kind) const override
    {
        return kind == QAccessible::Name ? m_announcement->text : QString();
    }
    QAccessibleInterface* parent() const override
    {
        return QAccessible::queryAccessibleInterface(m_announcement->parent());
    }
    QAccessibleInterface* child(int /*index*/) const override { return nullptr; }
    int childCount() const override { return 0; }
    int indexOfChild(const QAccessibleInterface* /*child*/) const override { return -1; }

private:
    Announcement* m_announcement;
};

QAccessibleInterface* makeInterface(const QString& /*className*/, QObject* object)
{
    if (auto* announcement = dynamic_cast<Announcement*>(object)) {
        return new AccessibleAnnouncement(announcement);
    }
    auto* widget = qobject_cast<QWidget*>(object);
    if (widget == nullptr) {
        return nullptr;
    }
    const auto* keeper = widget->findChild<QObject*>(QLatin1String(keeperName), Qt::FindDirectChildrenOnly);
    return keeper != nullptr ? new SpokenElement(widget, *static_cast<const NameKeeper*>(keeper)) : nullptr;
}

NameKeeper& keepName(QWidget& widget, QAccessible::Role role, std::function<QString()> name, bool isGroup)
{
    auto* keeper = new NameKeeper(role, std::move(name), isGroup, &widget);
    // Installing the same function again changes nothing.
    QAccessible::installFactory(makeInterface);
    return *keeper;
}

void collectTexts(QAccessibleInterface& element, QStringList& texts)
{
    const auto* label = qobject_cast<QLabel*>(element.object());
    const bool isTitle = label != nullptr && label->buddy() != nullptr;
    if (element.state().invisible || isTitle) {
        return;
    }
    if (element.role() == QAccessible::StaticText) {
        const QString text = element.text(QAccessible::Name);
        const bool isSentence = text.endsWith(QLatin1Char('.')) || text.endsWith(QStringLiteral("。"));
        texts << (isSentence ? text : text + QLatin1Char('.'));
    }
    for (int index = 0; index < element.childCount(); ++index) {
        if (QAccessibleInterface* child = element.child(index)) {
            collectTexts(*child, texts);
        }
    }
}

} // namespace

void makeSpokenElement(QWidget& widget, QAccessible::Role role, std::function<QString()> name)
{
    keepName(widget, role, std::move(name), false);
}

void makeSpokenGroup(QWidget& widget, QAccessible::Role role, std::function<QString()> name,
                     std::function<QString()> description)
{
    keepName(widget, role, std::move(name), true).description = std::move(description);
}

void announce(QWidget& widget, const QString& text)
{
    if (!QAccessible::isActive()) {
        return;
    }
    auto* announcement =
        widget.findChild<QObject*>(QLatin1String(announcementName), Qt::FindDirectChildrenOnly);
    if (announcement == nullptr) {
        QAccessible::installFactory(makeInterface);
        announcement = new Announcement(&widget);
        announcement->setObjectName(QLatin1String(announcementName));
    }
    static_cast<Announcement*>(announcement)->text = text;
    QAccessibleEvent event(announcement, QAccessible::ObjectShow);
    QAccessible::updateAccessibility(&event);
}

QString readableText(QWidget& widget)
{
    QStringList texts;
    collectTexts(*QAccessible::queryAccessibleInterface(&widget), texts);
    return texts.join(QLatin1Char(' '));
}

} // namespace brevlin
