#include "sample/MessageSample.h"

#include "sample/BackupWriter.h"
#include "sample/ManyMessages.h"
#include "sample/MessageDatabase.h"
#include "sample/MessageShowcase.h"
#include "sample/Random.h"

namespace Sample {

using namespace Qt::StringLiterals;

void addMessages(BackupWriter &writer, const Options &options)
{
    if (options.messages == 0)
        return;
    const QString domain = u"HomeDomain"_s;
    const QString path = u"Library/SMS/sms.db"_s;
    Random random(options.seed, "messages");
    MessageDatabase database(writer.contentPath(domain, path), options.messagesRelease);
    if (options.messages == Options::kShowcase)
        addMessageShowcase(database, writer, random);
    else
        addManyMessages(database, random, options.messages, options.conversations);
    if (!database.finish())
        writer.fail(path, database.error());
    writer.addWritten(domain, path);
    // The phone leaves these behind when it has written all back into the database.
    writer.addFile(domain, path + "-wal"_L1, QByteArray());
    writer.addFile(domain, path + "-shm"_L1, QByteArray(32768, '\0'));
}

} // namespace Sample
