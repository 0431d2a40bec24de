#ifndef PHONEBACKUP_BASE_RESULT_H
#define PHONEBACKUP_BASE_RESULT_H

#include "PhoneBackup/base/Notice.h"

#include <QString>

#include <utility>
#include <variant>

namespace PhoneBackup {

//! What kind of fault it is, and so what a caller can do about it.
enum class Fault {
    NotFound, //!< Nothing there.
    NotABackup, //!< Something is there, but no phone backup.
    Corrupt, //!< It is what was looked for, but damaged.
    CutOff, //!< There is much less of it than the index records.
    Encrypted, //!< It cannot be read without a password.
    WrongPassword, //!< The password does not open it.
    Locked, //!< Encrypted with a key that is not in the backup.
    NotSupported, //!< A form that this reader does not know (too old, too new).
    Io, //!< The operating system refused to read it.
    TemporaryFolder, //!< Nothing is wrong with it: the temporary folder cannot be used or is full.
    Cancelled, //!< The caller asked to stop.
};

//! A fault, where it lies, and what to tell a person: what is wrong and what to do.
struct Error // NOLINT(clang-analyzer-core.uninitialized.Assign): it does not follow std::variant
{
    Fault fault {};
    QString path;
    Notice what;
    int systemError = 0; //!< The error number of the system, where it was the system that refused.
};

struct Done
{
};

//! Either a value or an error; to ignore one is a compiler warning.
template <class T = Done>
class [[nodiscard]] Result
{
public:
    Result(T value) // NOLINT(google-explicit-constructor): `return value;` is what it is for
        : m_state(std::in_place_index<0>, std::move(value))
    {
    }
    Result(Error error) // NOLINT(google-explicit-constructor): `return Error { … };` likewise
        : m_state(std::in_place_index<1>, std::move(error))
    {
    }

    explicit operator bool() const { return m_state.index() == 0; }

    //! The value; only when there is one.
    T &value() { return std::get<0>(m_state); }
    const T &value() const { return std::get<0>(m_state); }
    T take() { return std::move(std::get<0>(m_state)); }

    //! The error; only when there is one.
    const Error &error() const { return std::get<1>(m_state); }

private:
    std::variant<T, Error> m_state;
};

} // namespace PhoneBackup

#endif
