#ifndef SAMPLE_NOTERECORD_H
#define SAMPLE_NOTERECORD_H

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>

namespace Sample {

//! A protobuf message, field by field.
class FieldWriter
{
public:
    FieldWriter &number(quint32 field, quint64 value);
    FieldWriter &real(quint32 field, float value);
    FieldWriter &bytes(quint32 field, const QByteArray &value);
    FieldWriter &text(quint32 field, const QString &value) { return bytes(field, value.toUtf8()); }

    QByteArray message() const { return m_message; }

private:
    void varint(quint64 value);

    QByteArray m_message;
};

//! A stretch of a note's text with one look.
struct NoteRun
{
    static constexpr int kPlain = -1;
    enum Style {
        Title = 0,
        Heading = 1,
        Monospaced = 4,
        Dotted = 100,
        Dashed = 101,
        Numbered = 102,
        Checklist = 103
    };

    QString text;
    int style = kPlain;
    int indent = 0;
    bool isDone = false;
    bool isQuote = false;
    QString link = {};
    QString attachment = {}; //!< Its identifier; the text is U+FFFC.
    QString attachmentType = {};
    QByteArray otherFields = {}; //!< Of its message.
};

//! The record of a note's text, not packed.
QByteArray noteDocument(const QList<NoteRun> &runs);

//! What a table is like, besides its cells.
struct TableShape
{
    static constexpr int kNone = -1;

    bool isRightToLeft = false;
    int deletedRow = kNone; //!< Its cells are still there; the phone does not show them.
    int lostRow = kNone; //!< Likewise, but nothing else tells of the row.
};

/*!
    The record of a table of \a rows that are all as long as the first, not packed. A cell that
    begins with U+FFFC holds a picture, whose identifier follows.
*/
QByteArray tableDocument(const QList<QStringList> &rows, const TableShape &shape = {});

//! \a bytes as gzip packs them.
QByteArray gzipped(const QByteArray &bytes);

} // namespace Sample

#endif
