#include "platform/freedesktop/sway/sway_work_area.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRect>

#include <cstring>
#include <utility>

namespace brevlin {

namespace {

constexpr std::uint32_t getWorkspaces = 1;
constexpr std::uint32_t subscribe = 2;
constexpr std::uint32_t getOutputs = 3;
constexpr std::uint32_t eventBit = 0x80000000;

constexpr int magicSize = 6;
constexpr const char* magic = "i3-ipc";
constexpr int headerSize = magicSize + 2 * static_cast<int>(sizeof(std::uint32_t));
// No answer that is asked for here comes near it.
constexpr std::uint32_t longestPayload = 1U << 20U;

QRect rectangle(const QJsonObject& object)
{
    const QJsonObject rect = object.value(QStringLiteral("rect")).toObject();
    const auto number = [&rect](const char* name) {
        return rect.value(QLatin1String(name)).toInt();
    };
    return {number("x"), number("y"), number("width"), number("height")};
}

} // namespace

std::vector<FloatingWindowSystem::ReservedArea> swayReservedAreas(const QByteArray& workspaces,
                                                                  const QByteArray& outputs)
{
    using enum FloatingWindowSystem::Edge;
    std::vector<FloatingWindowSystem::ReservedArea> areas;
    const auto add = [&areas](FloatingWindowSystem::Edge edge, const QRect& area) {
        if (!area.isEmpty()) {
            areas.push_back({edge, {area.x(), area.y(), area.width(), area.height()}});
        }
    };
    const QJsonArray allOutputs = QJsonDocument::fromJson(outputs).array();
    for (const auto& each : QJsonDocument::fromJson(workspaces).array()) {
        const QJsonObject workspace = each.toObject();
        if (!workspace.value(QStringLiteral("visible")).toBool()) {
            continue;
        }
        for (const auto& output : allOutputs) {
            const QJsonObject one = output.toObject();
            if (one.value(QStringLiteral("name")) != workspace.value(QStringLiteral("output"))) {
                continue;
            }
            const QRect all = rectangle(one);
            const QRect free = rectangle(workspace);
            add(left, {all.left(), all.top(), free.left() - all.left(), all.height()});
            add(right, {free.right() + 1, all.top(), all.right() - free.right(), all.height()});
            add(top, {all.left(), all.top(), all.width(), free.top() - all.top()});
            add(bottom, {all.left(), free.bottom() + 1, all.width(), all.bottom() - free.bottom()});
        }
    }
    return areas;
}

SwayWorkArea::SwayWorkArea(QObject* parent) : QObject(parent)
{
    const QString path = qEnvironmentVariable("SWAYSOCK");
    if (path.isEmpty()) {
        return;
    }
    m_stream = std::make_unique<LocalStream>(path.toStdString());
    connect(m_stream.get(), &LocalStream::received, this, &SwayWorkArea::read);
    send(subscribe, R"(["workspace","output"])");
    ask();
}

void SwayWorkArea::ask()
{
    send(getWorkspaces);
    send(getOutputs);
}

void SwayWorkArea::send(std::uint32_t type, const QByteArray& payload)
{
    if (!m_stream) {
        return;
    }
    const auto length = static_cast<std::uint32_t>(payload.size());
    QByteArray message(magic, magicSize);
    message.append(reinterpret_cast<const char*>(&length), sizeof length);
    message.append(reinterpret_cast<const char*>(&type), sizeof type);
    m_stream->send(message + payload);
}

void SwayWorkArea::read(const QByteArray& bytes)
{
    m_unread += bytes;
    while (m_unread.size() >= headerSize) {
        std::uint32_t length = 0;
        std::uint32_t type = 0;
        std::memcpy(&length, m_unread.constData() + magicSize, sizeof length);
        std::memcpy(&type, m_unread.constData() + magicSize + sizeof length, sizeof type);
        if (!m_unread.startsWith(magic) || length > longestPayload) {
            m_stream->close(); // whoever that is, it is not sway
            return;
        }
        const auto size = headerSize + static_cast<qsizetype>(length);
        if (m_unread.size() < size) {
            return;
        }
        const QByteArray payload = m_unread.mid(headerSize, length);
        m_unread.remove(0, size);
        received(type, payload);
    }
}

void SwayWorkArea::received(std::uint32_t type, const QByteArray& payload)
{
    if ((type & eventBit) != 0) {
        ask();
    } else if (type == getWorkspaces) {
        m_workspaces = payload;
    } else if (type == getOutputs) {
        auto reserved = swayReservedAreas(m_workspaces, payload);
        if (std::exchange(m_reserved, reserved) != reserved) {
            Q_EMIT changed();
        }
    }
}

} // namespace brevlin
