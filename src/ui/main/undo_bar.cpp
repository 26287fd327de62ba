#include "ui/main/undo_bar.h"

#include "app/app_model.h"
#include "app/undo_offer.h"
#include "ui/controls/capsule_button.h"
#include "ui/controls/form.h"
#include "ui/controls/popup_frame.h"
#include "ui/controls/spoken_element.h"
#include "ui/style/text.h"
#include "ui/style/theme.h"
#include "ui/style/typography.h"

#include <QHBoxLayout>
#include <QPainter>

namespace brevlin {

namespace {

constexpr int padding = 8;
constexpr int textPadding = 16;
constexpr int distance = 32; // from the edges
constexpr double cornerRadius = 23;
constexpr BilingualText undoText{"撤销", "Undo"};

QString counted(const char* chinese, const char* one, const char* several, std::size_t count,
                AppLanguage language)
{
    const QString text = qtText(language == AppLanguage::simplifiedChinese ? chinese
                                : count == 1                               ? one
                                                                           : several);
    return text.contains(QLatin1String("%1")) ? text.arg(count) : text;
}

} // namespace

UndoBar::UndoBar(AppModel& model, Place place, QWidget* parent)
    : QWidget(parent)
    , m_model(model)
    , m_place(place)
    , m_text(new FormLabel(textFont(TextRole::body), ThemeColor::label, this))
    , m_undo(new CapsuleButton(CapsuleStyle::secondary, ControlSize::compact, this))
{
    auto* line = new QHBoxLayout(this);
    if (place == Place::floating) {
        line->setContentsMargins(textPadding, padding, padding, padding);
    } else {
        line->setContentsMargins(0, 0, 0, 0);
    }
    line->setSpacing(textPadding);
    line->addWidget(m_text);
    line->addWidget(m_undo);
    makeSpokenGroup(*this, QAccessible::Notification, [this] { return text(); });
    connect(m_undo, &QAbstractButton::clicked, this, [this] { m_model.undoOffer().accept(); });
    connect(&model.undoOffer(), &UndoOffer::changed, this, &UndoBar::refresh);
    connect(&model, &AppModel::preferencesChanged, this, &UndoBar::refresh);
    refresh();
}

void UndoBar::lieIn(const QRect& room)
{
    m_room = room;
    const QSize size = sizeHint();
    setGeometry(room.right() + 1 - distance - size.width(), room.bottom() + 1 - distance - size.height(),
                size.width(), size.height());
}

QString UndoBar::text() const
{
    const auto& offer = m_model.undoOffer().current();
    if (!offer) {
        return {};
    }
    const auto say = [&](const char* chinese, const char* one, const char* several) {
        return counted(chinese, one, several, offer->count, m_model.language());
    };
    switch (offer->kind) {
    case UndoOffer::Kind::removal:
        return say("已删除 %1 条记录", "Deleted 1 record", "Deleted %1 records");
    case UndoOffer::Kind::renaming:
        return say("已更改 %1 条记录", "Changed 1 record", "Changed %1 records");
    case UndoOffer::Kind::import:
        return say("已导入 %1 条记录", "Imported 1 record", "Imported %1 records");
    case UndoOffer::Kind::restoration:
        return say("已恢复备份，共 %1 条记录", "Restored a backup of 1 record",
                   "Restored a backup of %1 records");
    case UndoOffer::Kind::endingEarly:
        return say("已结束本阶段", "Phase ended", "Phase ended");
    case UndoOffer::Kind::switching:
        return say("已切换阶段", "Phase switched", "Phase switched");
    case UndoOffer::Kind::skipping:
        return say("已跳过", "Skipped", "Skipped");
    }
    return {};
}

void UndoBar::refresh()
{
    m_undo->setText(qtText(undoText.in(m_model.language())));
    const auto& offer = m_model.undoOffer().current();
    const bool isShown = offer && (m_place == Place::floating || offer->isOfTimer());
    const QString words = isShown ? text() : QString();
    m_text->setText(words);
    setVisible(isShown);
    if (isShown && m_place == Place::floating) {
        layout()->activate();
        lieIn(m_room);
        raise();
        announce(*this, words);
    }
}

void UndoBar::paintEvent(QPaintEvent* /*event*/)
{
    if (m_place == Place::row) {
        return;
    }
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    paintPopup(painter, rect(), cornerRadius, PopupShadow::none, Theme::of(*this));
}

} // namespace brevlin
