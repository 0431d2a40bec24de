#ifndef ARCHIVE_RECORDS_CONTACTFIELDS_H
#define ARCHIVE_RECORDS_CONTACTFIELDS_H

#include "Archive/records/FieldWriter.h"
#include "PhoneBackup/contacts/Contact.h"

namespace Archive {

inline void fields(FieldWriter &field, const PhoneBackup::Contact::Value &value)
{
    field("kind", value.kind);
    field("label", value.label);
    field("text", value.text);
    field("day", value.day);
    field("parts", value.parts);
}

inline void fields(FieldWriter &field, const PhoneBackup::Contact &contact)
{
    field("id", contact.guid);
    field("row", contact.row, -1);
    field("isOrganization", contact.isOrganization);
    field("prefix", contact.name.prefix);
    field("given", contact.name.given);
    field("middle", contact.name.middle);
    field("family", contact.name.family);
    field("suffix", contact.name.suffix);
    field("spokenGiven", contact.name.spokenGiven);
    field("spokenMiddle", contact.name.spokenMiddle);
    field("spokenFamily", contact.name.spokenFamily);
    field("formerFamily", contact.name.formerFamily);
    field("nickname", contact.nickname);
    field("jobTitle", contact.jobTitle);
    field("department", contact.department);
    field("organization", contact.organization);
    field("spokenOrganization", contact.spokenOrganization);
    field("birthday", contact.birthday);
    field("note", contact.note);
    field("created", contact.created);
    field("modified", contact.modified);
    field("values", contact.values);
    field("groups", contact.groups);
}

} // namespace Archive

#endif
