#include "platform/freedesktop/tray/status_bus_types.h"

#include <QDBusMetaType>
#include <QtEndian>

namespace brevlin {

namespace {

template <typename... Fields>
QDBusArgument& writeStructure(QDBusArgument& argument, const Fields&... fields)
{
    argument.beginStructure();
    (argument << ... << fields);
    argument.endStructure();
    return argument;
}

template <typename... Fields>
const QDBusArgument& readStructure(const QDBusArgument& argument, Fields&... fields)
{
    argument.beginStructure();
    (argument >> ... >> fields);
    argument.endStructure();
    return argument;
}

} // namespace

QDBusArgument& operator<<(QDBusArgument& argument, const BusPixmap& value)
{
    return writeStructure(argument, value.width, value.height, value.bytes);
}

const QDBusArgument& operator>>(const QDBusArgument& argument, BusPixmap& value)
{
    return readStructure(argument, value.width, value.height, value.bytes);
}

QDBusArgument& operator<<(QDBusArgument& argument, const BusToolTip& value)
{
    return writeStructure(argument, value.iconName, value.pixmaps, value.title, value.text);
}

const QDBusArgument& operator>>(const QDBusArgument& argument, BusToolTip& value)
{
    return readStructure(argument, value.iconName, value.pixmaps, value.title, value.text);
}

QDBusArgument& operator<<(QDBusArgument& argument, const BusMenuNode& value)
{
    return writeStructure(argument, value.id, value.properties, value.children);
}

const QDBusArgument& operator>>(const QDBusArgument& argument, BusMenuNode& value)
{
    return readStructure(argument, value.id, value.properties, value.children);
}

QDBusArgument& operator<<(QDBusArgument& argument, const BusMenuProperties& value)
{
    return writeStructure(argument, value.id, value.properties);
}

const QDBusArgument& operator>>(const QDBusArgument& argument, BusMenuProperties& value)
{
    return readStructure(argument, value.id, value.properties);
}

QDBusArgument& operator<<(QDBusArgument& argument, const BusMenuPropertyNames& value)
{
    return writeStructure(argument, value.id, value.names);
}

const QDBusArgument& operator>>(const QDBusArgument& argument, BusMenuPropertyNames& value)
{
    return readStructure(argument, value.id, value.names);
}

QDBusArgument& operator<<(QDBusArgument& argument, const BusMenuEvent& value)
{
    return writeStructure(argument, value.id, value.type, value.data, value.timestamp);
}

const QDBusArgument& operator>>(const QDBusArgument& argument, BusMenuEvent& value)
{
    return readStructure(argument, value.id, value.type, value.data, value.timestamp);
}

BusPixmaps busPixmaps(const std::vector<StatusPicture>& pictures)
{
    BusPixmaps result;
    for (const StatusPicture& picture : pictures) {
        const auto count = static_cast<qsizetype>(picture.pixels.size());
        QByteArray bytes(count * static_cast<qsizetype>(sizeof(std::uint32_t)), Qt::Uninitialized);
        qToBigEndian<std::uint32_t>(picture.pixels.data(), count, bytes.data());
        result.append({picture.size, picture.size, bytes});
    }
    return result;
}

void registerStatusBusTypes()
{
    qDBusRegisterMetaType<BusPixmap>();
    qDBusRegisterMetaType<BusPixmaps>();
    qDBusRegisterMetaType<BusToolTip>();
    qDBusRegisterMetaType<BusMenuNode>();
    qDBusRegisterMetaType<BusMenuProperties>();
    qDBusRegisterMetaType<QList<BusMenuProperties>>();
    qDBusRegisterMetaType<BusMenuPropertyNames>();
    qDBusRegisterMetaType<QList<BusMenuPropertyNames>>();
    qDBusRegisterMetaType<BusMenuEvent>();
    qDBusRegisterMetaType<QList<BusMenuEvent>>();
    qDBusRegisterMetaType<QList<int>>();
}

} // namespace brevlin
