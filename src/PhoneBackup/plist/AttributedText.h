#ifndef PHONEBACKUP_PLIST_ATTRIBUTEDTEXT_H
#define PHONEBACKUP_PLIST_ATTRIBUTEDTEXT_H

#include <QByteArrayView>
#include <QList>
#include <QSize>
#include <QString>

#include <optional>

namespace PhoneBackup {

/*!
    \brief A text with attributes as the phone's message database stores it: a "typedstream".

    \par Bytes
    Untrusted: nothing is read beyond them, and nothing grows beyond what they hold. Time is linear.
*/
struct AttributedText
{
    //! A file that stands in the text; the character there is U+FFFC.
    struct File
    {
        qsizetype position; //!< In UTF-16 units.
        QString guid;
        QSize pixels; //!< Of a picture or film, where it is known.
    };

    //! A stretch that leads somewhere.
    struct Span
    {
        qsizetype position; //!< In UTF-16 units, as the length.
        qsizetype length;
        QString address;
    };

    QString text;
    QList<File> files; //!< In the order of the text.
    QList<Span> links;
    QList<Span> mentions; //!< Names of people; the address is theirs.
    QString transcription; //!< What was said in a voice message, as the phone understood it.

    //! Decodes \a data; none when it is damaged anywhere.
    static std::optional<AttributedText> decode(QByteArrayView data);

    //! The text that can be found in \a data, which decode() refused; none when there is none.
    static std::optional<QString> salvage(QByteArrayView data);
};

} // namespace PhoneBackup

#endif
