#ifndef ARCHIVE_DATA_DATAFILES_H
#define ARCHIVE_DATA_DATAFILES_H

#include "Archive/output/OutputTree.h"
#include "Archive/records/RecordJson.h"

#include <QSet>

#include <memory>

namespace Archive {

/*!
    \brief The records as JSON Lines in the folder data: one file per kind, and one per conversation
    for messages.

    Records that have a date are in its order, those of one moment in the order of their lines.
    \par Memory
    32 bytes per record of the kind that is being written.
*/
class DataFiles final : public RecordTaker
{
public:
    //! Both are borrowed.
    DataFiles(OutputTree &tree, const FileNames &files);
    ~DataFiles() override;

    //! What follows is of the kind with this name.
    void begin(const QByteArray &kind);

    void takeRecord(const Record &record) override;

    //! Ends the current kind.
    void end();

private:
    struct Line
    {
        qint64 dateMs;
        OutputStream::Line place;
        quint64 order; // the beginning of a hash of the line
    };

    void write(JsonRecord record);
    void endConversation();

    OutputTree &m_tree;
    RecordJson m_json;
    QByteArray m_kind;
    QByteArray m_conversation; // the path of its file below data
    bool m_isDated = false; // a record of the kind has a date
    bool m_isHead = false; // the record is a conversation, and no message
    QSet<QByteArray> m_names;
    std::unique_ptr<OutputStream> m_out;
    std::unique_ptr<OutputStream> m_messages;
    std::vector<Line> m_lines;
};

} // namespace Archive

#endif
