#include "PhoneBackup/messages/MessageBody.h"

#include "PhoneBackup/base/DataType.h"
#include "PhoneBackup/source/Source.h"
#include "PhoneBackup/sqlite/Statement.h"

#include <algorithm>

namespace PhoneBackup {

using namespace Qt::StringLiterals;

QString MessageBody::textAt(Source &source, const Statement &row, int column)
{
    const QByteArrayView bytes = row.bytes(column);
    if (bytes.size() <= kMaxTextBytes)
        return row.text(column);
    source.addProblem({ DataType::Messages,
                        u"HomeDomain/Library/SMS/sms.db: text"_s,
                        Notice("messages.textTooLong"),
                        true });
    return QString::fromUtf8(bytes.first(kMaxTextBytes));
}

MessageBody MessageBody::read(Source &source, const Statement &row, int attributed, int plain)
{
    MessageBody body;
    const QByteArrayView bytes = row.bytes(attributed);
    auto decoded = bytes.isEmpty() || bytes.size() > kMaxTextBytes ? std::nullopt
                                                                   : AttributedText::decode(bytes);
    if (decoded && !decoded->text.isEmpty()) {
        body.text = std::move(decoded->text);
        body.places = std::move(decoded->files);
        body.links = std::move(decoded->links);
        body.mentions = std::move(decoded->mentions);
        body.transcription = std::move(decoded->transcription);
        return body;
    }
    body.text = textAt(source, row, plain);
    if (body.text.isEmpty() && !bytes.isEmpty() && !decoded) {
        const std::optional<QString> salvaged =
            AttributedText::salvage(bytes.first(std::min(bytes.size(), kMaxTextBytes)));
        body.isUnreadable = !salvaged;
        body.text = salvaged.value_or(QString());
    }
    return body;
}

void MessageBody::reportUnreadable(Source &source, const QString &column)
{
    source.addProblem({ DataType::Messages,
                        u"HomeDomain/Library/SMS/sms.db: "_s + column,
                        Notice("messages.textDamaged"),
                        true });
}

} // namespace PhoneBackup
