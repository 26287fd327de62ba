#include "ui/timer/intention_field.h"

#include "app/app_model.h"
#include "core/intention.h"
#include "ui/style/text.h"
#include "ui/timer/suggestion_list.h"

#include <QFocusEvent>
#include <QKeyEvent>

namespace brevlin {

namespace {

constexpr BilingualText question{"这段时间专注于什么？", "What will you focus on?"};
constexpr BilingualText fieldName{"专注内容", "Intention"};
constexpr std::size_t mostOffered = 5;
constexpr int typingPause = 800; // milliseconds after the last key until a running phase takes the text

} // namespace

IntentionField::IntentionField(AppModel& model, QWidget* parent)
    : TextField(Look::quiet, parent), m_model(model)
{
    setAlignment(Qt::AlignHCenter);
    setTakesEscape(true);
    connect(this, &TextField::escapePressed, this, &IntentionField::giveUp);
    m_pause.setSingleShot(true);
    m_pause.setInterval(typingPause);
    connect(&m_pause, &QTimer::timeout, this, &IntentionField::take);
    connect(this, &QLineEdit::textEdited, this, [this] {
        m_pause.start();
        offer();
    });
    connect(&model, &AppModel::snapshotChanged, this, &IntentionField::follow);
    connect(&model, &AppModel::preparedIntentionChanged, this, &IntentionField::follow);
    connect(&model, &AppModel::preferencesChanged, this, &IntentionField::translate);
    connect(&model, &AppModel::sessionsChanged, this, [this] { m_index.reset(); });
    // Whatever the user does to the timer, what stands in the field is meant.
    connect(&model, &AppModel::commandReceived, this, &IntentionField::take);
    translate();
    follow();
}

// The list is the window's child, and would otherwise stay there with every screen that is made afresh.
IntentionField::~IntentionField()
{
    delete m_list;
}

void IntentionField::translate()
{
    const AppLanguage language = m_model.language();
    setPlaceholderText(qtText(question.in(language)));
    setAccessibleName(qtText(fieldName.in(language)));
    setMenuTexts(menuTexts(language == AppLanguage::english));
}

// What is being typed is not taken away by a phase that ends meanwhile.
void IntentionField::follow()
{
    if (!m_isTaking && !isModified()) {
        const QString text = qtText(m_model.intention());
        if (text != this->text()) {
            setText(text);
            setCursorPosition(0);
        }
        setToolTip(toolTipText(text));
    }
}

void IntentionField::take()
{
    m_pause.stop();
    if (!isModified() || isComposing() || m_isTaking) {
        return;
    }
    m_isTaking = true;
    m_model.setIntention(text().toStdString());
    m_isTaking = false;
    setModified(false);
    setToolTip(toolTipText(text()));
}

void IntentionField::finish()
{
    take();
    follow();
    leave();
    if (m_model.snapshot().runState == TimerRunState::idle) {
        m_model.performPrimaryAction();
    }
}

// First what is offered, then what was typed.
void IntentionField::giveUp()
{
    if (!offered().isEmpty()) {
        m_list->show({});
        return;
    }
    setModified(false);
    follow();
    leave();
}

// The keyboard goes back to what holds it while nobody types.
void IntentionField::leave()
{
    for (QWidget* holder = parentWidget(); holder != nullptr; holder = holder->parentWidget()) {
        if ((holder->focusPolicy() & Qt::ClickFocus) != 0) {
            holder->setFocus();
            return;
        }
    }
    clearFocus();
}

QStringList IntentionField::offered() const
{
    return m_list != nullptr && m_list->isVisible() ? m_list->texts() : QStringList{};
}

void IntentionField::offer()
{
    if (!m_index) {
        m_index = std::make_unique<IntentionIndex>(m_model.sessions());
    }
    if (m_list == nullptr || m_list->parentWidget() != window()) {
        delete m_list;
        m_list = new SuggestionList(*this);
        connect(m_list, &QObject::destroyed, this, [this] { m_list = nullptr; });
        connect(m_list, &SuggestionList::chosen, this, &IntentionField::choose);
    }
    QStringList texts;
    for (const std::string& text :
         m_index->find(typedIntention(text().toStdString(), longestIntention), mostOffered)) {
        texts.push_back(qtText(text));
    }
    m_list->show(texts);
}

void IntentionField::choose(const QString& text)
{
    setText(text);
    setModified(true);
    if (m_list != nullptr) {
        m_list->show({});
    }
    take();
}

void IntentionField::mousePressEvent(QMouseEvent* event)
{
    TextField::mousePressEvent(event);
    if (text().isEmpty()) {
        offer();
    }
}

void IntentionField::focusOutEvent(QFocusEvent* event)
{
    TextField::focusOutEvent(event);
    if (event->reason() == Qt::PopupFocusReason) {
        return; // its own menu
    }
    if (m_list != nullptr) {
        m_list->show({});
    }
    take();
    deselect();
    setCursorPosition(0);
}

void IntentionField::keyPressEvent(QKeyEvent* event)
{
    const bool isReturn = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    const bool isArrow = event->key() == Qt::Key_Down || event->key() == Qt::Key_Up;
    if (isReturn && !isComposing()) {
        if (const auto marked = m_list != nullptr ? m_list->marked() : std::nullopt) {
            choose(*marked);
        } else {
            finish();
        }
    } else if (isArrow && !isComposing()) {
        if (offered().isEmpty()) {
            offer();
        }
        if (!offered().isEmpty()) {
            m_list->step(event->key() == Qt::Key_Down ? 1 : -1);
        }
    } else {
        TextField::keyPressEvent(event);
    }
}

} // namespace brevlin
