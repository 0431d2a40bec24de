#include "Archive/data/DataFiles.h"

#include "PhoneBackup/base/PhoneTime.h"

#include <QCryptographicHash>
#include <QtEndian>

#include <algorithm>

namespace Archive {

using namespace Qt::StringLiterals;
using PhoneBackup::PhoneTime::kNoMs;

namespace {

quint64 hashOf(const QByteArray &line)
{
    return qFromBigEndian<quint64>(
        QCryptographicHash::hash(line, QCryptographicHash::Sha1).constData());
}

} // namespace

DataFiles::DataFiles(OutputTree &tree, const FileNames &files)
    : m_tree(tree)
    , m_json(files, [this](const JsonRecord &record) { write(record); })
{
}

DataFiles::~DataFiles() = default;

void DataFiles::begin(const QByteArray &kind)
{
    m_kind = kind;
    m_lines.clear();
    m_isDated = false;
    m_out = std::make_unique<OutputStream>(m_tree);
}

void DataFiles::takeRecord(const Record &record)
{
    m_isHead = std::holds_alternative<const ConversationOf *>(record)
        || std::holds_alternative<const ChatOf *>(record);
    m_json.takeRecord(record);
}

void DataFiles::write(JsonRecord record)
{
    if (m_isHead) {
        endConversation();
        const QByteArray hash =
            QCryptographicHash::hash(record.line, QCryptographicHash::Sha1).toHex().first(12);
        QByteArray name = hash;
        for (int i = 2; m_names.contains(name); ++i)
            name = hash + '-' + QByteArray::number(i);
        m_names.insert(name);
        m_conversation = m_kind + '/' + name + ".jsonl";
        m_messages = std::make_unique<OutputStream>(m_tree);
        record.line.chop(1);
        record.line += ",\"messages\":\"data/" + m_conversation + "\"}";
    }
    record.line += '\n';
    if (m_messages && !m_isHead) {
        m_messages->write(record.line);
        return;
    }
    m_isDated = m_isDated || record.dateMs != kNoMs;
    m_lines.push_back(
        { record.dateMs, { m_out->size(), record.line.size() }, hashOf(record.line) });
    m_out->write(record.line);
}

void DataFiles::endConversation()
{
    if (m_messages)
        m_messages->finish(u"data/"_s + QString::fromLatin1(m_conversation));
    m_messages.reset();
}

void DataFiles::end()
{
    endConversation();
    if (m_out && m_out->size() > 0) {
        const QString path = u"data/%1.jsonl"_s.arg(QString::fromLatin1(m_kind));
        if (!m_isDated)
            m_lines.clear(); // as they were read
        std::sort(m_lines.begin(), m_lines.end(), [](const Line &a, const Line &b) {
            return std::tie(a.dateMs, a.order, a.place.at)
                < std::tie(b.dateMs, b.order, b.place.at);
        });
        std::vector<OutputStream::Line> order;
        order.reserve(m_lines.size());
        for (const Line &line : m_lines)
            order.push_back(line.place);
        if (order.empty())
            m_out->finish(path);
        else
            m_out->finish(path, order);
    }
    m_out.reset();
    m_lines.clear();
}

} // namespace Archive
