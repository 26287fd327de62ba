#include "ui/screens/history/history_view.h"

#include "app/app_model.h"
#include "ui/controls/capsule_button.h"
#include "ui/controls/empty_state_view.h"
#include "ui/controls/text_field.h"
#include "ui/screens/history/history_list.h"
#include "ui/screens/history/session_dialog.h"
#include "ui/style/text.h"

#include <QShortcut>

#include <algorithm>

namespace brevlin {

namespace {

constexpr int sidePadding = 24;
constexpr int topPadding = 16;
constexpr int barHeight = topPadding + 30;
constexpr int longestSearch = 360;

constexpr BilingualText emptyTitle{"还没有记录", "No history yet"};
constexpr BilingualText emptyDescription{"完成、切换或结束一次计时后，记录会安全地保存在本机。",
                                         "Completed, switched, and ended timers are saved locally."};
constexpr BilingualText nothingTitle{"没有找到记录", "Nothing found"};
constexpr BilingualText nothingDescription{"试试其他文字、#标签或日期，例如 2026-01-31。",
                                           "Try other words, a #label or a date such as 2026-01-31."};
constexpr BilingualText searchText{"搜索文字、#标签或日期", "Search text, #label or date"};
constexpr BilingualText addText{"添加记录", "Add Record"};

} // namespace

HistoryView::HistoryView(AppModel& model, QWidget* parent)
    : QWidget(parent)
    , m_model(model)
    , m_search(new TextField(TextField::Look::framed, this))
    , m_add(new CapsuleButton(CapsuleStyle::secondary, ControlSize::compact, this))
    , m_list(new HistoryList(model, this))
    , m_emptyState(new EmptyStateView(Symbol::clockBadgeQuestionmark, this))
{
    m_add->setSymbol(Symbol::plus);
    m_search->setClearButtonEnabled(false);
    connect(m_search, &QLineEdit::textChanged, this, &HistoryView::applyFilter);
    connect(m_search, &QLineEdit::returnPressed, this, [this] { m_list->setFocus(Qt::TabFocusReason); });
    connect(m_add, &QAbstractButton::clicked, this, [this] { openDialog(std::nullopt); });
    connect(m_list, &HistoryList::additionRequested, this, [this] { openDialog(std::nullopt); });
    connect(m_list, &HistoryList::editRequested, this, [this](const Uuid& record) { openDialog(record); });
    connect(new QShortcut(QKeySequence::Find, this), &QShortcut::activated, this, [this] {
        m_search->setFocus(Qt::ShortcutFocusReason);
        m_search->selectAll();
    });
    m_search->setTakesEscape(true);
    connect(m_search, &TextField::escapePressed, this, [this] {
        m_search->clear();
        m_list->setFocus(Qt::OtherFocusReason);
    });
    connect(&model, &AppModel::sessionsChanged, this, &HistoryView::refresh);
    connect(&model, &AppModel::preferencesChanged, this, &HistoryView::refresh);
    connect(&model, &AppModel::ticked, this, [this] {
        if (m_timeZone != m_model.calendar().timeZone()) {
            refresh();
        }
    });
    refresh();
}

void HistoryView::setFilter(const QString& text)
{
    m_search->setText(text);
}

void HistoryView::applyFilter()
{
    m_list->setFilter(HistoryFilter(m_search->text().toStdString()));
    refresh();
}

void HistoryView::openDialog(const std::optional<Uuid>& record)
{
    auto* dialog = new SessionDialog(m_model, record, window());
    dialog->show();
}

void HistoryView::refresh()
{
    const AppLanguage language = m_model.language();
    m_timeZone = m_model.calendar().timeZone();
    m_list->refresh();
    m_search->setPlaceholderText(qtText(searchText.in(language)));
    m_search->setAccessibleName(qtText(searchText.in(language)));
    m_search->setMenuTexts(TextField::menuTexts(language == AppLanguage::english));
    m_add->setText(qtText(addText.in(language)));
    const bool isFiltered = !m_search->text().trimmed().isEmpty();
    m_emptyState->setTexts(qtText((isFiltered ? nothingTitle : emptyTitle).in(language)),
                           qtText((isFiltered ? nothingDescription : emptyDescription).in(language)));
    const bool isEmpty = m_list->rowCount() == 0;
    m_emptyState->setVisible(isEmpty && !m_model.isHistoryAwaited());
    if (isEmpty && m_list->hasFocus()) {
        m_emptyState->setFocus(); // or the keyboard would go to the window's buttons
    }
    m_list->setVisible(!isEmpty);
    m_search->setVisible(!m_model.sessions().empty());
    m_add->setVisible(!m_model.isHistoryAwaited());
}

void HistoryView::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    const QSize add = m_add->sizeHint();
    const QSize search = m_search->sizeHint();
    m_add->setGeometry(width() - sidePadding - add.width(), topPadding, add.width(), add.height());
    const int room = m_add->x() - 2 * sidePadding;
    m_search->setGeometry(sidePadding, topPadding + (add.height() - search.height()) / 2,
                          std::min(room, longestSearch), search.height());
    const QRect below = rect().adjusted(0, barHeight, 0, 0);
    m_list->setGeometry(below);
    m_emptyState->setGeometry(below);
}

} // namespace brevlin
