#pragma once

#include <QDBusArgument>
#include <QDBusMessage>
#include <QMetaType>
#include <QVariant>

#include <cstddef>
#include <optional>
#include <tuple>
#include <utility>

namespace brevlin {

// What other programs send may have any type. Qt hands it to a slot or a cast as it is, and ends the program
// where the types differ in their structure; so all that comes from the bus passes through here.

/// Whether it came as exactly the type that the bus has for this one.
bool isOfBusType(const QVariant& value, QMetaType type);

/// The value where it came as exactly this type.
template <typename Value>
std::optional<Value> busValue(const QVariant& value)
{
    return isOfBusType(value, QMetaType::fromType<Value>()) ? std::optional{qdbus_cast<Value>(value)}
                                                            : std::nullopt;
}

namespace busDetail {

template <typename... Values, std::size_t... places>
std::optional<std::tuple<Values...>> busArguments(const QVariantList& arguments,
                                                  std::index_sequence<places...> /*places*/)
{
    if (!(isOfBusType(arguments.at(places), QMetaType::fromType<Values>()) && ...)) {
        return std::nullopt;
    }
    return std::tuple<Values...>{qdbus_cast<Values>(arguments.at(places))...};
}

} // namespace busDetail

/// The arguments of a signal or of an answer where they are exactly these; nothing for an error.
template <typename... Values>
std::optional<std::tuple<Values...>> busArguments(const QDBusMessage& message)
{
    const QVariantList arguments = message.arguments();
    if (message.type() == QDBusMessage::ErrorMessage || arguments.size() != sizeof...(Values)) {
        return std::nullopt;
    }
    return busDetail::busArguments<Values...>(arguments, std::index_sequence_for<Values...>{});
}

/// The one argument of a signal or of an answer where it is exactly this type.
template <typename Value>
std::optional<Value> busArgument(const QDBusMessage& message)
{
    auto arguments = busArguments<Value>(message);
    return arguments ? std::optional{std::get<0>(std::move(*arguments))} : std::nullopt;
}

/// The one argument of an answer, for the caller to read, where it has this signature: for what Qt has no
/// type for.
std::optional<QDBusArgument> busArgument(const QDBusMessage& message, QLatin1String signature);

/// What the variants around a value hold: some programs wrap it in one more than they should. An invalid
/// variant where there are more than anybody does by mistake.
QVariant unwrapped(const QVariant& value);

} // namespace brevlin
