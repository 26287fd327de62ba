#pragma once

#include <cassert>
#include <optional>
#include <utility>
#include <variant>

namespace brevlin {

/// Wraps an error for the constructor of Expected.
template <typename E>
struct Unexpected
{
    E error;
};

template <typename E>
Unexpected(E) -> Unexpected<E>;

/// Either a value or the reason why there is none. Stands in for std::expected until the toolchain has it.
template <typename T, typename E>
class [[nodiscard]] Expected final
{
public:
    Expected(T value) // NOLINT(google-explicit-constructor): returning a value is the common case
        : m_state(std::in_place_index<0>, std::move(value))
    {}
    template <typename F>
    Expected(Unexpected<F> unexpected) // NOLINT(google-explicit-constructor)
        : m_state(std::in_place_index<1>, std::move(unexpected.error))
    {}

    explicit operator bool() const { return m_state.index() == 0; }

    const T& operator*() const& { return value(); }
    T& operator*() & { return value(); }
    T&& operator*() && { return std::move(value()); }
    const T* operator->() const { return &value(); }
    T* operator->() { return &value(); }

    const E& error() const
    {
        assert(m_state.index() == 1);
        return *std::get_if<1>(&m_state);
    }

private:
    const T& value() const
    {
        assert(m_state.index() == 0);
        return *std::get_if<0>(&m_state);
    }
    T& value()
    {
        assert(m_state.index() == 0);
        return *std::get_if<0>(&m_state);
    }

    std::variant<T, E> m_state;
};

/// Success without a value, or the reason of the failure.
template <typename E>
class [[nodiscard]] Expected<void, E> final
{
public:
    Expected() = default;
    template <typename F>
    Expected(Unexpected<F> unexpected) // NOLINT(google-explicit-constructor)
        : m_error(std::move(unexpected.error))
    {}

    explicit operator bool() const { return !m_error.has_value(); }

    const E& error() const
    {
        assert(m_error.has_value());
        return *m_error;
    }

private:
    std::optional<E> m_error;
};

} // namespace brevlin
