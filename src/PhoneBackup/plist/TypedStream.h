#ifndef PHONEBACKUP_PLIST_TYPEDSTREAM_H
#define PHONEBACKUP_PLIST_TYPEDSTREAM_H

#include <QByteArrayView>
#include <QVarLengthArray>

#include <optional>

namespace PhoneBackup {

/*!
    \brief Reads the objects of a typedstream from front to back.

    A group is the string of its types and a value for each of them; objects and strings that were
    read before come again as references. Every reader fails for good at the first byte that does
    not belong there: then isBad() is true, and whatever is read is empty.
    \par Bytes
    The data must outlive the reader: texts are views of it.
*/
class TypedStream
{
public:
    using Index = int;
    static constexpr Index kNil = -1;

    //! What is known of an object or class that was read.
    struct Object
    {
        enum class Kind : quint8 { Unknown, Class, String, Dictionary, Attributed, Number, Url };

        Kind kind = Kind::Unknown;
        QByteArrayView text; //!< Of a string, C string or address; the name of a class.
        qint64 number = 0; //!< Of a number; what has a fraction is rounded.
    };

    //! Something that a dictionary says of its stretch of the text.
    struct Attribute
    {
        enum class Key : quint8 { File, Transcription, Link, Mention, Width, Height };

        Index dictionary;
        Key key;
        Index value; //!< A text, an address or a number.
    };

    //! One stretch of an attributed string.
    struct Run
    {
        qint64 length; //!< In UTF-16 units.
        Index attributes; //!< The dictionary.
    };

    explicit TypedStream(QByteArrayView data);

    //! Checks the header.
    bool readHeader();

    //! Reads a group of one object. The runs of an attributed string are those of runs().
    Index readRoot();

    bool isBad() const { return m_bad; }

    //! An object that was read; nothing for nil.
    const Object &object(Index index) const;

    //! The string that the attributed string, once read, is about.
    Index string() const { return m_string; }
    const QVarLengthArray<Run, 8> &runs() const { return m_runs; }

    //! What is known of all dictionaries, one after the other; mostly nothing.
    const QVarLengthArray<Attribute, 4> &attributes() const { return m_attributes; }

    //! Reads a length at the beginning of \a data and the bytes after it; none when they end first.
    static std::optional<QByteArrayView> lengthAndBytes(QByteArrayView data);

private:
    struct Value
    {
        Index object = kNil;
        qint64 integer = 0;
        QByteArrayView bytes;
    };
    //! What the groups of one object have said so far.
    struct Assembly;

    uchar take();
    bool isAtMark(uchar mark) const;
    void fail();
    QByteArrayView takeBytes(qint64 count);
    qint64 readInteger(bool isUnsigned);
    qint64 integerAfter(uchar first, bool isUnsigned);
    int reference(uchar first, qsizetype tableSize);
    QByteArrayView readString();
    Index addObject();
    Index readObject(int depth);
    Index readClass(int depth);
    Index readCString();
    void readGroup(int depth, Assembly &assembly);
    QByteArrayView readValue(QByteArrayView types, int depth, Value &value);
    QByteArrayView readArray(QByteArrayView types, int depth);
    QByteArrayView readStruct(QByteArrayView types, int depth);
    qint64 readReal(qint64 size);
    void take(Assembly &assembly, QByteArrayView types, const Value &value, const Value &second);
    void takeObject(Assembly &assembly, Index index);

    const uchar *m_next;
    const uchar *m_end;
    bool m_bad = false;
    qsizetype m_valuesLeft; // every value takes a byte, but for hostile types that take none
    QVarLengthArray<QByteArrayView, 24> m_strings;
    QVarLengthArray<Object, 32> m_objects;
    QVarLengthArray<Run, 8> m_runs;
    QVarLengthArray<Attribute, 4> m_attributes;
    QVarLengthArray<Index, 8> m_sets; // dictionaries of the runs by their number, from 1
    Index m_string = kNil;
};

} // namespace PhoneBackup

#endif
