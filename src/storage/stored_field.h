#pragma once

#include <string_view>
#include <tuple>

namespace brevlin {

/// One field of a stored object: the name of its key, and the member that holds it. A tuple of these is the
/// one list of an object's fields, from which reading, writing and comparing are made.
template <typename Object, typename Value>
struct StoredField
{
    std::string_view name;
    Value Object::*member;

    const Value& of(const Object& object) const { return object.*member; }
    Value& of(Object& object) const { return object.*member; }
};
template <typename Object, typename Value>
StoredField(const char*, Value Object::*) -> StoredField<Object, Value>;

/// Calls the visitor with every field, in the order of the list.
template <typename Fields, typename Visitor>
constexpr void forEachField(const Fields& fields, const Visitor& visitor)
{
    std::apply([&](const auto&... field) { (visitor(field), ...); }, fields);
}

} // namespace brevlin
