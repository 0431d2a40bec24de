#ifndef ARCHIVE_RECORDS_FIELDWRITER_H
#define ARCHIVE_RECORDS_FIELDWRITER_H

#include "Archive/records/FileNames.h"
#include "Archive/records/JsonText.h"
#include "PhoneBackup/base/PhoneTime.h"

#include <QDateTime>
#include <QMap>
#include <QSize>
#include <QStringList>

#include <algorithm>
#include <array>
#include <concepts>
#include <cstring>
#include <memory>
#include <optional>
#include <span>
#include <vector>

namespace Archive {

//! The names of the values of an enumeration, in their order; "" is not written.
template <class Enum>
inline constexpr std::nullptr_t kNames = nullptr;

//! A moment in milliseconds since 1970, UTC, or PhoneTime::kNoMs.
struct Moment
{
    qint64 ms;
};

//! A file of the backup.
struct File
{
    PhoneBackup::FileIndex::Row row;
};

/*!
    \brief Writes records as JSON: one object per record, one field per fact.

    For each kind of record there is a function fields(writer, record), which names its facts. What
    is empty is left out: no text, no date, false, a null pointer, no elements, an object without
    fields. Numbers are written unless they are the one that means "none".
*/
class FieldWriter
{
public:
    FieldWriter(QByteArray &out, const FileNames &files)
        : m_out(out)
        , m_files(files)
    {
    }

    //! Adds a fact.
    template <class T>
    void operator()(const char *name, const T &value)
    {
        const qsizetype before = m_out.size();
        const bool isFirst = m_out.back() == '{';
        const std::size_t length = std::strlen(name);
        m_out.resize(before + qsizetype(length) + (isFirst ? 3 : 4));
        char *to = m_out.data() + before;
        if (!isFirst)
            *to++ = ',';
        *to++ = '"';
        to = std::copy_n(name, length, to);
        *to++ = '"';
        *to = ':';
        if (!put(value))
            m_out.truncate(before);
    }

    //! Adds a number unless it is \a none.
    template <class Number, class None>
    requires std::convertible_to<None, Number>
    void operator()(const char *name, Number number, None none)
    {
        if (number != Number(none))
            (*this)(name, number);
    }

    //! Appends \a value. \return false when it is empty.
    template <class T>
    bool put(const T &value)
    {
        if constexpr (std::same_as<T, bool>) {
            m_out += value ? "true" : "false";
            return value;
        } else if constexpr (std::is_enum_v<T>) {
            const QByteArrayView name(kNames<T>[std::size_t(value)]);
            m_out += '"';
            m_out += name;
            m_out += '"';
            return !name.isEmpty();
        } else if constexpr (std::integral<T>) {
            JsonText::append(m_out, qint64(value));
            return true;
        } else if constexpr (std::floating_point<T>) {
            JsonText::append(m_out, double(value));
            return std::isfinite(value);
        } else if constexpr (std::convertible_to<const T &, QStringView>) {
            const QStringView text(value);
            JsonText::append(m_out, text);
            return !text.isEmpty();
        } else {
            return putObject(value);
        }
    }

private:
    bool putNull()
    {
        m_out += "null";
        return false;
    }

    // Names of the phone that are bytes.
    bool putObject(QByteArrayView text) { return put(QString::fromUtf8(text)); }
    bool putObject(const QByteArray &text) { return put(QString::fromUtf8(text)); }

    bool putObject(Moment moment)
    {
        if (moment.ms == PhoneBackup::PhoneTime::kNoMs)
            return putNull();
        JsonText::appendMoment(m_out, moment.ms);
        return true;
    }
    bool putObject(const QDateTime &date)
    {
        return putObject(
            Moment { date.isValid() ? date.toMSecsSinceEpoch() : PhoneBackup::PhoneTime::kNoMs });
    }
    bool putObject(const QDate &day) { return put(day.toString(Qt::ISODate)); }

    bool putObject(File file)
    {
        return file.row == PhoneBackup::FileIndex::kNone ? putNull()
                                                         : put(m_files.nameOf(file.row));
    }

    bool putObject(const QSize &size)
    {
        if (size.isEmpty())
            return putNull();
        return putObject(std::array { size.width(), size.height() });
    }

    template <class T>
    bool putObject(const std::optional<T> &value)
    {
        if (!value)
            return putNull();
        put(*value);
        return true;
    }

    template <class T>
    bool putObject(const std::unique_ptr<T> &value)
    {
        return value ? put(*value) : putNull();
    }
    template <class T>
    bool putObject(const std::shared_ptr<T> &value)
    {
        return value ? put(*value) : putNull();
    }

    bool putObject(const QMap<QString, QString> &parts)
    {
        m_out += '{';
        for (auto part = parts.cbegin(); part != parts.cend(); ++part) {
            if (part != parts.cbegin())
                m_out += ',';
            put(part.key());
            m_out += ':';
            put(part.value());
        }
        m_out += '}';
        return !parts.isEmpty();
    }

    template <class T>
    requires requires(const T &list)
    {
        list.begin();
        list.end();
    }
    bool putObject(const T &list)
    {
        m_out += '[';
        bool isFirst = true;
        for (const auto &element : list) {
            if (!isFirst)
                m_out += ',';
            isFirst = false;
            put(element);
        }
        m_out += ']';
        return !isFirst;
    }

    template <class T>
    requires requires(FieldWriter &writer, const T &record) { fields(writer, record); }
    bool putObject(const T &record)
    {
        m_out += '{';
        const qsizetype empty = m_out.size();
        fields(*this, record);
        const bool isFilled = m_out.size() > empty;
        m_out += '}';
        return isFilled;
    }

    QByteArray &m_out;
    const FileNames &m_files;
};

} // namespace Archive

#endif
