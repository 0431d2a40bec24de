#ifndef PHONEBACKUP_BASE_NOTICE_H
#define PHONEBACKUP_BASE_NOTICE_H

#include <QByteArrayView>
#include <QList>
#include <QString>

#include <variant>
#include <vector>

namespace PhoneBackup {

/*!
    \brief What a person is to be told, without the words: sentences, each a code and its facts.

    A code is "room.what", such as "notes.locked", and stands for one sentence, whose words are made
    by whoever shows it. Its facts are what differs from one time to the next: names, numbers, what
    the system answered, or notices in their turn.
    \code
    Notice notice("sqlite.damaged", { name, Notice("sqlite.circle") });
    notice += Notice("folder.copyAgain");
    \endcode
*/
class Notice
{
public:
    //! An amount of data.
    struct Bytes
    {
        qint64 count = 0;
        friend bool operator==(Bytes a, Bytes b) { return a.count == b.count; }
    };
    struct Fact;
    struct Sentence;

    //! Nothing to tell.
    Notice();

    //! The sentence \a code, a literal, with its \a facts in the order of their places.
    explicit Notice(const char *code);
    Notice(const char *code, std::vector<Fact> facts);

    //! Words of somebody else, such as the message of a library.
    explicit Notice(const QString &text);

    ~Notice();
    Notice(const Notice &other);
    Notice(Notice &&other) noexcept;
    Notice &operator=(const Notice &other);
    Notice &operator=(Notice &&other) noexcept;

    bool isEmpty() const;
    const std::vector<Sentence> &sentences() const { return m_sentences; }

    //! The code of the first sentence; empty for the words of somebody else, and without any.
    QByteArrayView code() const;

    //! Appends the sentences of \a other.
    Notice &operator+=(const Notice &other);
    friend Notice operator+(Notice first, const Notice &second) { return first += second; }

    friend bool operator==(const Notice &a, const Notice &b);

private:
    std::vector<Sentence> m_sentences;
};

//! A name, a number, an amount of data, or a notice in its turn.
struct Notice::Fact
{
    // NOLINTBEGIN(google-explicit-constructor): facts are listed as what they are
    Fact(const QString &text)
        : value(text)
    {
    }
    Fact(qint64 number)
        : value(number)
    {
    }
    Fact(Bytes bytes)
        : value(bytes)
    {
    }
    Fact(const Notice &notice)
        : value(notice)
    {
    }
    // NOLINTEND(google-explicit-constructor)

    std::variant<QString, qint64, Bytes, Notice> value;

    friend bool operator==(const Fact &a, const Fact &b) { return a.value == b.value; }
};

struct Notice::Sentence
{
    const char *code = ""; //!< Empty: text says it.
    std::vector<Fact> facts;
    QString text;

    friend bool operator==(const Sentence &a, const Sentence &b)
    {
        return QByteArrayView(a.code) == QByteArrayView(b.code) && a.facts == b.facts
            && a.text == b.text;
    }
};

} // namespace PhoneBackup

#endif
