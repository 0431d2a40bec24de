#include "PhoneBackup/notes/NoteBodyWriter.h"

#include "PhoneBackup/source/StoredText.h"

namespace PhoneBackup {

QString NoteBody::firstLine() const
{
    for (const NoteBlock &block : blocks) {
        QString line;
        for (const NoteRun &run : runsOf(block))
            line += textOf(run);
        line = line.section(u'\n', 0, 0).trimmed();
        if (!line.isEmpty())
            return line;
    }
    return {};
}

bool NoteBodyWriter::hasRoom()
{
    const std::size_t parts =
        m_body.blocks.size() + m_body.runs.size() + std::size_t(m_body.links.size());
    m_isFull = m_isFull || parts >= kMaxParts;
    return !m_isFull;
}

void NoteBodyWriter::begin(const NoteBlock &block)
{
    if (!hasRoom())
        return;
    m_body.blocks.push_back(block);
    m_body.blocks.back().firstRun = qint32(m_body.runs.size());
    m_body.blocks.back().runCount = 0;
    m_isOpen = true;
}

void NoteBodyWriter::put(QStringView text, const NoteLook &look)
{
    if (!m_isOpen || !hasRoom())
        return;
    const qsizetype room = kMaxCharacters - m_body.text.size();
    if (text.size() > room) {
        m_isFull = true;
        text = StoredText::beginning(text, room);
    }
    NoteBlock &open = m_body.blocks.back();
    // An attachment has a run of its own.
    if (open.runCount > 0 && look.attachment < 0 && m_body.runs.back().look == look) {
        m_body.runs.back().length += qint32(text.size());
    } else {
        m_body.runs.push_back({ qint32(m_body.text.size()), qint32(text.size()), look });
        ++open.runCount;
    }
    m_body.text += text;
}

void NoteBodyWriter::drop()
{
    m_body.blocks.pop_back();
    m_isOpen = false;
}

void NoteBodyWriter::addTable(const std::shared_ptr<const NoteTable> &table, NoteBlock block)
{
    block.kind = NoteBlock::Kind::Table;
    block.table = qint32(m_body.tables.size());
    begin(block);
    if (m_isOpen)
        m_body.tables.push_back(table);
    m_isOpen = false;
}

qint32 NoteBodyWriter::addLink(const QString &target)
{
    if (target.isEmpty() || !hasRoom())
        return -1;
    m_body.links.append(target);
    return qint32(m_body.links.size()) - 1;
}

void NoteBodyWriter::forgetLink(qint32 number)
{
    for (NoteRun &run : m_body.runs) {
        if (run.look.link == number)
            run.look.link = -1;
    }
}

} // namespace PhoneBackup
