#ifndef EXPORT_SOUNDTOPLAYABLE_SOUNDTOPLAYABLE_H
#define EXPORT_SOUNDTOPLAYABLE_SOUNDTOPLAYABLE_H

#include <QByteArray>
#include <QString>

/*!
    Converts sound that browsers cannot play, as phones write it: AMR becomes WAV; what is in a CAF
    file becomes Ogg (Opus), AAC, or WAV. Opus and AAC are not encoded again.
*/
namespace Export::SoundToPlayable {

//! Whether the file \a path is such a sound, by its first bytes. The file must exist.
bool isWanted(const QString &path);

//! The result of a conversion.
struct Conversion
{
    QByteArray sound; //!< A complete file; empty if the conversion failed.
    QString extension; //!< Of that file, with its dot.
    QString why; //!< Why the conversion failed, without a full stop; else empty.
};

//! Converts the sound in the file \a path.
Conversion convert(const QString &path);

} // namespace Export::SoundToPlayable

#endif
