#include "sample/WhatsappSample.h"

#include "sample/BackupWriter.h"
#include "sample/ManyWhatsapp.h"
#include "sample/Random.h"
#include "sample/WhatsappCalls.h"
#include "sample/WhatsappDatabase.h"
#include "sample/WhatsappShowcase.h"

namespace Sample {

using namespace Qt::StringLiterals;

void addWhatsapp(BackupWriter &writer, const Options &options)
{
    if (options.whatsappMessages == 0)
        return;
    const QString path = u"ChatStorage.sqlite"_s;
    Random random(options.seed, "whatsapp");
    WhatsappDatabase database(writer.contentPath(whatsappDomain(), path));
    if (options.whatsappMessages == Options::kShowcase)
        addWhatsappShowcase(database, writer, random);
    else
        addManyWhatsapp(database, random, options.whatsappMessages, options.whatsappChats);
    if (!database.finish())
        writer.fail(path, database.error());
    writer.addWritten(whatsappDomain(), path);
    if (options.whatsappMessages == Options::kShowcase && options.calls != 0)
        addWhatsappCalls(writer);
}

} // namespace Sample
