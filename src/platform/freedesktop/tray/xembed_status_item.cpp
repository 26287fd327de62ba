#include "platform/freedesktop/tray/xembed_status_item.h"

#include <QAction>
#include <QCursor>
#include <QGuiApplication>
#include <QIcon>
#include <QImage>
#include <QPixmap>
#include <QScreen>
#include <QTextDocument>

#include <utility>

namespace brevlin {

namespace {

QIcon iconOf(const std::vector<StatusPicture>& pictures)
{
    QIcon icon;
    for (const StatusPicture& picture : pictures) {
        const QImage image(reinterpret_cast<const uchar*>(picture.pixels.data()), picture.size, picture.size,
                           QImage::Format_ARGB32);
        icon.addPixmap(QPixmap::fromImage(image.copy()));
    }
    return icon;
}

QPoint nativePointer()
{
    const QPoint pointer = QCursor::pos();
    const QScreen* screen = QGuiApplication::screenAt(pointer);
    if (screen == nullptr) {
        return pointer;
    }
    // A screen's origin is the same number in points and in native pixels.
    const QPoint origin = screen->geometry().topLeft();
    return origin + (QPointF(pointer - origin) * screen->devicePixelRatio()).toPoint();
}

} // namespace

StatusPopupMenu::StatusPopupMenu(std::function<void(const std::string&)> rowChosen)
    : m_rowChosen(std::move(rowChosen))
{}

void StatusPopupMenu::setRows(const std::vector<StatusMenuRow>& rows)
{
    if (m_rows.size() != rows.size()) {
        m_menu.clear();
        for (const StatusMenuRow& row : rows) {
            QAction* action = row.isSeparator() ? m_menu.addSeparator() : m_menu.addAction(QString());
            QObject::connect(action, &QAction::triggered, &m_menu,
                             [this, identifier = row.identifier] { m_rowChosen(identifier); });
        }
    }
    m_rows = rows;
    const QList<QAction*> actions = m_menu.actions();
    for (std::size_t index = 0; index < rows.size(); ++index) {
        QAction* action = actions.at(static_cast<qsizetype>(index));
        if (!rows[index].isSeparator()) {
            action->setText(QString::fromStdString(rows[index].text));
            action->setEnabled(rows[index].isEnabled);
        }
    }
}

XEmbedStatusItem::XEmbedStatusItem(QMenu& menu)
{
    m_icon.setContextMenu(&menu);
    connect(&m_icon, &QSystemTrayIcon::activated, this, [this](QSystemTrayIcon::ActivationReason reason) {
        if (reason == QSystemTrayIcon::Trigger || reason == QSystemTrayIcon::MiddleClick) {
            const QPoint pointer = nativePointer();
            Q_EMIT activated(pointer.x(), pointer.y());
        }
    });
}

void XEmbedStatusItem::setPictures(const StatusPictures& pictures)
{
    m_icon.setIcon(iconOf(pictures.withClock));
}

void XEmbedStatusItem::setTexts(const StatusTexts& texts)
{
    const QString text = QString::fromStdString(texts.toolTipTitle + "\n" + texts.toolTipDetail);
    m_icon.setToolTip(Qt::mightBeRichText(text) ? Qt::convertFromPlainText(text) : text);
}

void XEmbedStatusItem::setVisible(bool isVisible)
{
    m_icon.setVisible(isVisible);
}

bool XEmbedStatusItem::isEmbedded()
{
    // An embedded window's place is asked of the X server: once is enough.
    m_wasEmbedded = m_wasEmbedded || !m_icon.geometry().isEmpty();
    return m_wasEmbedded;
}

} // namespace brevlin
