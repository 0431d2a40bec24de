#ifndef SAMPLE_TYPEDSTREAM_H
#define SAMPLE_TYPEDSTREAM_H

#include <QByteArray>
#include <QList>
#include <QString>

namespace Sample {

//! What holds for a stretch of a message's text.
struct TextRun
{
    qsizetype lengthUtf16 = 0;
    int part = 0; //!< Number of the bubble that the stretch belongs to.
    QString attachmentGuid; //!< Of the file for which the stretch, U+FFFC, stands.
    QString link;
    QString mention; //!< Address of the person whose name the stretch is.
    QString
        transcription = {}; //!< What was said in the voice message for which the stretch stands.
};

/*!
    \brief The text of a message as the phone stores it besides, or instead of, the plain one.

    \a runs without a length of their own share one bubble; none at all is a single run. The
    lengths have to add up to that of \a text.
*/
QByteArray attributedBody(const QString &text, const QList<TextRun> &runs = {});

} // namespace Sample

#endif
