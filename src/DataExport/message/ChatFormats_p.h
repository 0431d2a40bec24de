#ifndef DATAEXPORT_MESSAGE_CHATFORMATS_P_H
#define DATAEXPORT_MESSAGE_CHATFORMATS_P_H

#include "backup/FormatPasses_p.h"
#include "export/CHtmlExporter.h"
#include "export/CsvFormat_p.h"
#include "message/MessagePage_p.h"

constexpr int kChatFormats = 2;

/*!
    Exports the chats in \a data, whatever kind they are of, as a page and then as CSV. \a passes
    are kChatFormats. \return whether every format that was started succeeded.
*/
template <class PageTranslate, class CsvTranslate, class Data>
bool exportChats(Data *data, FormatPasses passes)
{
    {
        CHtmlExporter page;
        PageTranslate translator(data);
        page.setStyle(passes.isHardened()
                          ? translator.smsStyle() + MessagePage::fittingStyleElement()
                          : translator.smsStyle());
        passes.run(page, translator);
    }
    CPlainFileExporter csv(QStringLiteral(".csv"), false);
    CsvTranslate translator(data);
    CsvFormat::setCodec(csv, passes.isHardened());
    passes.run(csv, translator);
    return passes.succeeded();
}

#endif
