#pragma once

#include "platform/status_item.h"

#include <QByteArray>
#include <QDBusArgument>
#include <QList>
#include <QString>
#include <QVariantList>
#include <QVariantMap>

namespace brevlin {

// What StatusNotifierItem and its menu send over the bus.

/// (iiay): ARGB32 in network byte order.
struct BusPixmap
{
    int width = 0;
    int height = 0;
    QByteArray bytes;
};
using BusPixmaps = QList<BusPixmap>;

/// (sa(iiay)ss)
struct BusToolTip
{
    QString iconName;
    BusPixmaps pixmaps;
    QString title;
    QString text;
};

/// (ia{sv}av)
struct BusMenuNode
{
    int id = 0;
    QVariantMap properties;
    QVariantList children;
};

/// (ia{sv})
struct BusMenuProperties
{
    int id = 0;
    QVariantMap properties;
};

/// (ias)
struct BusMenuPropertyNames
{
    int id = 0;
    QStringList names;
};

/// (isvu)
struct BusMenuEvent
{
    int id = 0;
    QString type;
    QDBusVariant data;
    uint timestamp = 0;
};

QDBusArgument& operator<<(QDBusArgument& argument, const BusPixmap& value);
const QDBusArgument& operator>>(const QDBusArgument& argument, BusPixmap& value);
QDBusArgument& operator<<(QDBusArgument& argument, const BusToolTip& value);
const QDBusArgument& operator>>(const QDBusArgument& argument, BusToolTip& value);
QDBusArgument& operator<<(QDBusArgument& argument, const BusMenuNode& value);
const QDBusArgument& operator>>(const QDBusArgument& argument, BusMenuNode& value);
QDBusArgument& operator<<(QDBusArgument& argument, const BusMenuProperties& value);
const QDBusArgument& operator>>(const QDBusArgument& argument, BusMenuProperties& value);
QDBusArgument& operator<<(QDBusArgument& argument, const BusMenuPropertyNames& value);
const QDBusArgument& operator>>(const QDBusArgument& argument, BusMenuPropertyNames& value);
QDBusArgument& operator<<(QDBusArgument& argument, const BusMenuEvent& value);
const QDBusArgument& operator>>(const QDBusArgument& argument, BusMenuEvent& value);

BusPixmaps busPixmaps(const std::vector<StatusPicture>& pictures);
/// Once before the first of them is sent; again changes nothing.
void registerStatusBusTypes();

} // namespace brevlin
