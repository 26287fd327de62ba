#include "ui/screens/history/history_view.h"

#include "app/app_model.h"
#include "ui/controls/empty_state_view.h"
#include "ui/screens/history/history_list.h"
#include "ui/style/text.h"

namespace brevlin {

namespace {

constexpr BilingualText emptyTitle{"还没有记录", "No history yet"};
constexpr BilingualText emptyDescription{"完成、切换或结束一次计时后，记录会安全地保存在本机。",
                                         "Completed, switched, and ended timers are saved locally."};

} // namespace

HistoryView::HistoryView(AppModel& model, QWidget* parent)
    : QWidget(parent)
    , m_model(model)
    , m_list(new HistoryList(model, this))
    , m_emptyState(new EmptyStateView(Symbol::clockBadgeQuestionmark, this))
{
    connect(&model, &AppModel::sessionsChanged, this, &HistoryView::refresh);
    connect(&model, &AppModel::preferencesChanged, this, &HistoryView::refresh);
    connect(&model, &AppModel::ticked, this, [this] {
        if (m_timeZone != m_model.calendar().timeZone()) {
            refresh();
        }
    });
    refresh();
}

void HistoryView::refresh()
{
    m_timeZone = m_model.calendar().timeZone();
    m_list->refresh();
    m_emptyState->setTexts(qtText(emptyTitle.in(m_model.language())),
                           qtText(emptyDescription.in(m_model.language())));
    const bool isEmpty = m_model.sessions().empty();
    m_emptyState->setVisible(isEmpty && !m_model.isHistoryAwaited());
    if (isEmpty && m_list->hasFocus()) {
        m_emptyState->setFocus(); // or the keyboard would go to the window's buttons
    }
    m_list->setVisible(!isEmpty);
}

void HistoryView::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    m_list->setGeometry(rect());
    m_emptyState->setGeometry(rect());
}

} // namespace brevlin
