#ifndef PHONEBACKUP_MEDIA_BOOKS_H
#define PHONEBACKUP_MEDIA_BOOKS_H

#include "PhoneItems/DataTypes.h"

namespace PhoneBackup {

/*!
    Data type 4: books and PDFs of the reader, by title. A book that the phone keeps as a folder is
    one item; its file is made when it is asked for.
*/
void readBooks(Source &source, DataSets &sets);

} // namespace PhoneBackup

#endif
