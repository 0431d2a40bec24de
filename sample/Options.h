#ifndef SAMPLE_OPTIONS_H
#define SAMPLE_OPTIONS_H

#include <QList>

namespace Sample {

//! What a sample backup holds. A count of 0 leaves out all that belongs to that kind of data.
struct Options
{
    quint64 seed = 1;
    int photos = 24;
    int videos = 3;
    int sharedPhotos = 6;
    int voiceMemos = 5;
    int books = 4;
    int ringtones = 3;
    int appDocuments = 12;
    int voicemails = 5;
    int indexRows = 0; //!< Rows of the index on top, folders among them, without content files.
    QList<qint64> fileSizesBytes; //!< Of photos and videos, in turn; empty: as they come.
};

} // namespace Sample

#endif
