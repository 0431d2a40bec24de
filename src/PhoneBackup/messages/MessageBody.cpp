#include "PhoneBackup/messages/MessageBody.h"

#include "PhoneBackup/messages/SmsDatabase.h"
#include "PhoneBackup/source/Source.h"
#include "PhoneBackup/sqlite/Statement.h"
#include "platform/Translation_p.h"

#include <algorithm>

DATAEXPORT_USE_TR(DataExport);

namespace PhoneBackup {

using namespace Qt::StringLiterals;

QString MessageBody::textAt(Source &source, const Statement &row, int column)
{
    const QByteArrayView bytes = row.bytes(column);
    if (bytes.size() <= kMaxTextBytes)
        return row.text(column);
    source.addProblem({ SmsDatabase::kMessages,
                        u"HomeDomain/Library/SMS/sms.db: text"_s,
                        tr("The text of some messages is too long; its end is left out."),
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
    source.addProblem({ SmsDatabase::kMessages,
                        u"HomeDomain/Library/SMS/sms.db: "_s + column,
                        tr("The text of some messages is damaged and could not be read."),
                        true });
}

} // namespace PhoneBackup
