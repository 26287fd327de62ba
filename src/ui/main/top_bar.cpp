#include "ui/main/top_bar.h"

#include "app/app_model.h"
#include "ui/controls/bar_buttons.h"
#include "ui/controls/spoken_element.h"
#include "ui/style/text.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QMouseEvent>

#include <algorithm>

namespace brevlin {

namespace {

constexpr int leadingPadding = 100;
constexpr int fullScreenLeadingPadding = 18;
constexpr int trailingPadding = 18;
constexpr int tabSpacing = 3;
constexpr int windowButtonInset = 14; // of the first button's square; its disc begins 4 points later

constexpr BilingualText sectionsText{"栏目", "Sections"};
constexpr BilingualText closeText{"关闭", "Close"};
constexpr BilingualText minimizeText{"最小化", "Minimize"};
constexpr BilingualText maximizeText{"最大化", "Maximize"};
constexpr BilingualText restoreText{"还原", "Restore"};

} // namespace

TopBar::TopBar(AppModel& model, SectionSelection& selection, QWidget* parent)
    : QWidget(parent), m_model(model), m_selection(selection)
{
    setFixedHeight(barHeight);
    makeSpokenGroup(*this, QAccessible::Grouping,
                    [this] { return qtText(sectionsText.in(m_model.language())); });
    for (const AppSection section : allCases<AppSection>()) {
        if (section == AppSection::about) {
            continue;
        }
        auto* tab = new SectionTab(this);
        connect(tab, &QAbstractButton::clicked, this, [this, section] { m_selection.select(section); });
        m_tabs.push_back(tab);
    }
    m_about = new LogoButton(this);
    for (SelectableButton* button : sections()) {
        button->setStandsInRow(true);
        connect(button, &PlainButton::neighborRequested, this, &TopBar::selectNeighbor);
    }
    m_close = new WindowButton(WindowButton::Kind::close, this);
    m_minimize = new WindowButton(WindowButton::Kind::minimize, this);
    m_maximize = new WindowButton(WindowButton::Kind::maximize, this);
    connect(m_about, &QAbstractButton::clicked, this, [this] { m_selection.select(AppSection::about); });
    connect(m_close, &QAbstractButton::clicked, this, &TopBar::closeRequested);
    connect(m_minimize, &QAbstractButton::clicked, this, &TopBar::minimizeRequested);
    connect(m_maximize, &QAbstractButton::clicked, this, &TopBar::maximizeRequested);
    connect(&model, &AppModel::preferencesChanged, this, &TopBar::refresh);
    connect(&selection, &SectionSelection::sectionChanged, this, &TopBar::refresh);
    refresh();
}

void TopBar::refresh()
{
    const AppLanguage language = m_model.language();
    for (std::size_t index = 0; index < m_tabs.size(); ++index) {
        const AppSection section = allCases<AppSection>().at(index);
        m_tabs[index]->setText(qtText(title(section, language)));
        m_tabs[index]->setSelected(section == m_selection.section());
    }
    m_about->setAccessibleName(qtText(title(AppSection::about, language)));
    m_about->setSelected(m_selection.section() == AppSection::about);
    for (SelectableButton* button : sections()) {
        button->setFocusPolicy(button->isSelected() ? Qt::TabFocus : Qt::NoFocus);
    }
    const auto name = [language](WindowButton* button, const BilingualText& text) {
        button->setAccessibleName(qtText(text.in(language)));
        button->setToolTip(qtText(text.in(language)));
    };
    name(m_close, closeText);
    name(m_minimize, minimizeText);
    name(m_maximize, m_isMaximized ? restoreText : maximizeText);
    layOut();
}

std::vector<SelectableButton*> TopBar::sections() const
{
    std::vector<SelectableButton*> buttons(m_tabs.begin(), m_tabs.end());
    buttons.push_back(m_about);
    return buttons;
}

void TopBar::selectNeighbor(int distance)
{
    const std::vector<SelectableButton*> buttons = sections();
    const auto selected = std::find_if(buttons.begin(), buttons.end(),
                                       [](const SelectableButton* button) { return button->isSelected(); });
    const auto index = std::clamp<std::ptrdiff_t>(selected - buttons.begin() + distance, 0,
                                                  static_cast<std::ptrdiff_t>(buttons.size()) - 1);
    SelectableButton* wanted = buttons[static_cast<std::size_t>(index)];
    wanted->click();
    wanted->setFocus(Qt::TabFocusReason);
}

// Whatever was made last would stand behind them.
void TopBar::putWindowButtonsLast()
{
    QWidget* last = window()->previousInFocusChain();
    // Qt puts nothing behind what the keyboard does not reach.
    while (last->focusPolicy() == Qt::NoFocus) {
        last = last->previousInFocusChain();
    }
    for (WindowButton* button : {m_close, m_minimize, m_maximize}) {
        if (last != button) {
            setTabOrder(last, button);
        }
        last = button;
    }
}

void TopBar::setFullScreen(bool isFullScreen)
{
    m_isFullScreen = isFullScreen;
    for (WindowButton* button : {m_close, m_minimize, m_maximize}) {
        button->setVisible(!isFullScreen);
    }
    layOut();
}

void TopBar::setMaximized(bool isMaximized)
{
    m_isMaximized = isMaximized;
    m_maximize->setKind(isMaximized ? WindowButton::Kind::restore : WindowButton::Kind::maximize);
    refresh();
}

void TopBar::layOut()
{
    const auto place = [](QWidget* widget, int x) {
        const QSize size = widget->sizeHint();
        widget->setGeometry(x, (barHeight - size.height()) / 2, size.width(), size.height());
    };
    int x = windowButtonInset;
    for (WindowButton* button : {m_close, m_minimize, m_maximize}) {
        place(button, x);
        x += button->sizeHint().width();
    }
    x = m_isFullScreen ? fullScreenLeadingPadding : leadingPadding;
    for (SectionTab* tab : m_tabs) {
        place(tab, x);
        x += tab->sizeHint().width() + tabSpacing;
    }
    place(m_about, width() - trailingPadding - m_about->sizeHint().width());
}

void TopBar::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    layOut();
}

void TopBar::mousePressEvent(QMouseEvent* event)
{
    if (event->button() == Qt::LeftButton) {
        m_pressPosition = event->globalPosition().toPoint();
    }
}

void TopBar::mouseMoveEvent(QMouseEvent* event)
{
    // The window manager takes the pointer for the move, so it begins only where a double click can no longer
    // follow.
    if (m_pressPosition && (event->globalPosition().toPoint() - *m_pressPosition).manhattanLength() >=
                               QApplication::startDragDistance()) {
        m_pressPosition.reset();
        Q_EMIT moveRequested();
    }
}

void TopBar::mouseReleaseEvent(QMouseEvent* /*event*/)
{
    m_pressPosition.reset();
}

void TopBar::mouseDoubleClickEvent(QMouseEvent* event)
{
    if (event->button() == Qt::LeftButton) {
        m_pressPosition.reset();
        Q_EMIT maximizeRequested();
    }
}

void TopBar::contextMenuEvent(QContextMenuEvent* event)
{
    Q_EMIT menuRequested(event->globalPos());
}

} // namespace brevlin
