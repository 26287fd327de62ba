#pragma once

#include "platform/freedesktop/bus/bus_object.h"
#include "platform/status_item.h"

#include <functional>

namespace brevlin {

/// The item as hosts see it (https://www.freedesktop.org/wiki/Specifications/StatusNotifierItem/), with the
/// label that Ayatana's hosts show beside the picture. Where the label is known to be shown, the picture is
/// without the clock. A second costs a signal of the label and, where that is not known, one of the tool tip;
/// hosts read no more for two than for one.
class StatusNotifierItem final : public BusInterface
{
    Q_OBJECT

public:
    static const QString path;
    static const QString menuPath;

    explicit StatusNotifierItem(MessageBus& bus);

    void setPictures(const StatusPictures& pictures);
    void setTexts(const StatusTexts& texts);
    void setShowsLabel(bool showsLabel);
    /// Whether anybody listens; at first nobody does.
    void setIsCollected(bool isCollected) { m_isCollected = isCollected; }
    bool isCollected() const { return m_isCollected; }

Q_SIGNALS:
    void activated(int x, int y);
    void menuRequested(int x, int y);
    /// Somebody asked for the label alone: whoever does so again and again shows it.
    void labelAsked();

protected:
    QVariantMap properties() const override;
    void propertyAsked(const QString& name) override;
    BusAnswer answer(const QString& method, const QVariantList& arguments) override;

private:
    QString label() const;
    QString labelGuide() const;
    void tell(const char* signal, const QVariantList& arguments = {}) const;
    void tellLabel() const;

    BusObject m_object;
    StatusPictures m_pictures;
    StatusTexts m_texts;
    bool m_showsLabel = false;
    bool m_isCollected = false;
    std::string m_toldTitle; // the host's, which is renewed together with the picture
};

} // namespace brevlin
