#ifndef DATAEXPORT_CONTACT_CCONTACT2VCFTRANSLATE_H
#define DATAEXPORT_CONTACT_CCONTACT2VCFTRANSLATE_H

#include "contact/CContactTranslate.h"

/*!
    \brief Writes each contact as a vCard 2.1, as a rule each into a file of its own.

    \par Bytes
    Lines end in CR LF. Values stand as they are stored, without escapes, encoding or folding; line
    breaks of addresses become blanks. N and ORG hold the parts that there are, without empty ones
    between them. The photo goes in as it is stored. Dates other than the birthday, related names,
    social profiles and phonetic names have no line.
    \par Bytes in a hardened sink
    N, ORG and ADR have all their parts in the order of the standard, with semicolons in a part
    escaped. A value with a comma, semicolon or backslash, or with anything but printable ASCII, is
    quoted-printable in UTF-8 and one line, so that no value can make a line or a card of its own.
    Photos are folded and bear their type. A birthday without a year is "--MM-dd". An account is
    "X-<SERVICE>:<user>", or X-IM when the service gives no name.
    \par Memory
    That of one card.
*/
class DATAEXPORT_EXPORT CContact2VCFTranslate final : public CContactTranslate
{
public:
    //! \a data is borrowed.
    explicit CContact2VCFTranslate(BkContactData *data);
    ~CContact2VCFTranslate();

    //! Does nothing. \return true.
    bool translateHeader(CIDataExporter *exporter, const QString &title) override;

    //! Does nothing. \return true.
    bool translateDataBefore(CIDataExporter *exporter) override;

    //! Does nothing. \return true.
    bool translateDataAfter(CIDataExporter *exporter) override;

    //! Writes the card of \a item, in one piece.
    bool translateDataItem(CIDataExporter *exporter, BkContactItem *item) override;
};

#endif
