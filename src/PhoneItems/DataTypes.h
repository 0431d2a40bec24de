#ifndef PHONEITEMS_DATATYPES_H
#define PHONEITEMS_DATATYPES_H

#include "backup/BkData.h"

#include <QList>

#include <map>
#include <memory>

namespace PhoneBackup {
class Source;
}

namespace PhoneItems {

//! The data sets that have been read, by their code.
using DataSets = std::map<int, std::unique_ptr<BkData>>;

//! A data type that this reader can read.
struct DataSetReader
{
    int code;
    //! Puts the set of the code into the given ones; may put others that it read along the way.
    void (*read)(PhoneBackup::Source &source, DataSets &sets);
};

//! All data types that can be read, in the order of their codes.
const QList<DataSetReader> &dataTypeTable();

} // namespace PhoneItems

#endif
