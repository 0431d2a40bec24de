#ifndef PHONEBACKUP_NOTES_NOTEBODYWRITER_H
#define PHONEBACKUP_NOTES_NOTEBODYWRITER_H

#include "PhoneBackup/notes/NoteBody.h"

namespace PhoneBackup {

/*!
    \brief Puts the body of a note together, block by block.
    \par Memory
    At most kMaxCharacters, and kMaxParts blocks, runs and links: what goes beyond is dropped.
*/
class NoteBodyWriter
{
public:
    static constexpr qsizetype kMaxCharacters = qsizetype(8) << 20;
    static constexpr std::size_t kMaxParts = std::size_t(1) << 20;

    //! Whether text can be added to the last block.
    bool isOpen() const { return m_isOpen; }

    //! The block that is open.
    NoteBlock &block() { return m_body.blocks.back(); }

    //! Whether nothing has been put into the block that is open.
    bool isBlockEmpty() const { return m_body.blocks.back().runCount == 0; }

    //! Opens a block such as \a block.
    void begin(const NoteBlock &block);

    //! Adds \a text to the block that is open.
    void put(QStringView text, const NoteLook &look);

    void end() { m_isOpen = false; }

    //! Takes away the block that is open, which is empty.
    void drop();

    //! Adds \a table as a block such as \a block.
    void addTable(const std::shared_ptr<const NoteTable> &table, NoteBlock block);

    //! Adds a link. \return its number, -1 when \a target is empty.
    qint32 addLink(const QString &target);

    //! Makes the characters of the link \a number ordinary ones.
    void forgetLink(qint32 number);

    //! Whether something had to be dropped.
    bool isFull() const { return m_isFull; }

    NoteBody take() { return std::move(m_body); }

private:
    bool hasRoom();

    NoteBody m_body;
    bool m_isOpen = false;
    bool m_isFull = false;
};

} // namespace PhoneBackup

#endif
