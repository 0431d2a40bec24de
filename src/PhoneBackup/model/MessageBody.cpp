#include "model/MessageBody.h"

#include "model/SmsDatabase.h"
#include "model/Source.h"
#include "platform/Translation_p.h"
#include "sqlite/Statement.h"

namespace PhoneBackup {

using namespace Qt::StringLiterals;
using DataExport::tr;

MessageBody MessageBody::read(const Statement &row, int attributed, int plain)
{
    MessageBody body;
    const QByteArrayView bytes = row.bytes(attributed);
    auto decoded = bytes.isEmpty() ? std::nullopt : AttributedText::decode(bytes);
    if (decoded && !decoded->text.isEmpty()) {
        body.text = std::move(decoded->text);
        body.places = std::move(decoded->files);
        body.transcription = std::move(decoded->transcription);
        return body;
    }
    body.text = row.text(plain);
    if (body.text.isEmpty() && !bytes.isEmpty() && !decoded) {
        const std::optional<QString> salvaged = AttributedText::salvage(bytes);
        body.isUnreadable = !salvaged;
        body.text = salvaged.value_or(QString());
    }
    return body;
}

void MessageBody::tellUnreadable(Source &source, const QString &column)
{
    source.addProblem({ SmsDatabase::kMessages,
                        u"HomeDomain/Library/SMS/sms.db: "_s + column,
                        tr("The text of some messages is damaged and could not be read."),
                        true });
}

} // namespace PhoneBackup
