#ifndef ARCHIVE_RECORDS_RECORDJSON_H
#define ARCHIVE_RECORDS_RECORDJSON_H

#include "Archive/records/FileNames.h"
#include "Archive/records/RecordTaker.h"

namespace Archive {

//! A record as JSON in one line, without its end.
struct JsonRecord
{
    QByteArray line;
    qint64 dateMs; //!< What its kind is ordered by, PhoneTime::kNoMs for none.
};

//! Writes each record that it takes as JSON.
class RecordJson final : public RecordTaker
{
public:
    using Sink = std::function<void(const JsonRecord &record)>;

    //! \a files is borrowed.
    RecordJson(const FileNames &files, Sink sink);

    void takeRecord(const Record &record) override;

private:
    const FileNames &m_files;
    Sink m_sink;
    JsonRecord m_record;
};

} // namespace Archive

#endif
