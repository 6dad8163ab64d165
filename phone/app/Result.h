// What host code returns when it may fail: a value, or an error with a sentence for the user.

#pragma once

#include <optional>
#include <string>
#include <utility>
#include <variant>

enum class ErrorCode {
    Failed = 1,      // none of the others
    NotFound = 2,    // what was named does not exist
    Malformed = 3,   // text or data that is not what it should be
    Denied = 4,      // not allowed, or a read-only medium
    Full = 5,        // no space left
    Unavailable = 6, // somebody else has it, or it does not answer
};

struct Error {
    ErrorCode code = ErrorCode::Failed;
    // What happened and what to do, for people: a whole sentence.
    std::string sentence;
};

template <typename T> class [[nodiscard]] Result {
public:
    Result(T value)
        : m_outcome(std::in_place_index<0>, std::move(value))
    {
    }
    Result(Error error)
        : m_outcome(std::in_place_index<1>, std::move(error))
    {
    }

    bool ok() const { return m_outcome.index() == 0; }
    explicit operator bool() const { return ok(); }

    // Only when ok(); otherwise std::bad_variant_access.
    T& value() & { return std::get<0>(m_outcome); }
    const T& value() const& { return std::get<0>(m_outcome); }
    // By value: what comes out of a temporary outlives it.
    T value() && { return std::get<0>(std::move(m_outcome)); }

    // Only when not ok(); otherwise std::bad_variant_access.
    const Error& error() const& { return std::get<1>(m_outcome); }
    Error error() && { return std::get<1>(std::move(m_outcome)); }

private:
    std::variant<T, Error> m_outcome;
};

// Success without a value: `return {};`
template <> class [[nodiscard]] Result<void> {
public:
    Result() = default;
    Result(Error error)
        : m_error(std::move(error))
    {
    }

    bool ok() const { return !m_error; }
    explicit operator bool() const { return ok(); }

    // Only when not ok(); otherwise std::bad_optional_access.
    const Error& error() const& { return m_error.value(); }
    Error error() && { return std::move(m_error).value(); }

private:
    std::optional<Error> m_error;
};
