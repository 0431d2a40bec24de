#include "CaseSql.h"

#include "sample/NoteRecord.h"
#include "sample/PropertyList.h"
#include "sample/TypedStream.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <sqlite3.h>

#include <array>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

// {"5": 1, "10": {"1f": 0.5}}: numbers, texts and messages by their fields, "f" for a float.
QByteArray message(const QJsonObject &fields)
{
    Sample::FieldWriter writer;
    for (auto field = fields.begin(); field != fields.end(); ++field) {
        const bool isReal = field.key().endsWith(u'f');
        const quint32 number = (isReal ? field.key().chopped(1) : field.key()).toUInt();
        if (field.value().isObject())
            writer.bytes(number, message(field.value().toObject()));
        else if (field.value().isString())
            writer.text(number, field.value().toString());
        else if (isReal)
            writer.real(number, float(field.value().toDouble()));
        else
            writer.number(number, quint64(field.value().toInteger()));
    }
    return writer.message();
}

Sample::NoteRun runOf(const QJsonValue &value)
{
    if (value.isString())
        return { value.toString() };
    const QJsonObject about = value.toObject();
    Sample::NoteRun run { about[u"text"].toString(), about[u"style"].toInt(-1) };
    run.indent = about[u"indent"].toInt();
    run.isDone = about[u"done"].toBool();
    run.isQuote = about[u"quote"].toBool();
    run.link = about[u"link"].toString();
    run.attachment = about[u"inset"].toString();
    run.attachmentType = about[u"type"].toString();
    run.otherFields = message(about[u"fields"].toObject());
    if (!run.attachment.isEmpty())
        run.text = QChar(QChar::ObjectReplacementCharacter);
    return run;
}

QByteArray note(const QJsonArray &description)
{
    QList<Sample::NoteRun> runs;
    for (const QJsonValue &run : description)
        runs.append(runOf(run));
    return Sample::noteDocument(runs);
}

QByteArray noteTable(const QJsonArray &description, const QJsonObject &shape)
{
    QList<QStringList> rows;
    for (const QJsonValue &row : description)
        rows.append(row.toVariant().toStringList());
    return Sample::tableDocument(rows,
                                 { shape[u"rightToLeft"].toBool(),
                                   shape[u"deleted"].toInt(Sample::TableShape::kNone),
                                   shape[u"lost"].toInt(Sample::TableShape::kNone) })
        .replace(QByteArray::fromHex(shape[u"from"].toString().toLatin1()),
                 QByteArray::fromHex(shape[u"to"].toString().toLatin1()));
}

QByteArray argument(int count, sqlite3_value **values, int place)
{
    return place < count ? QByteArray(static_cast<const char *>(sqlite3_value_blob(values[place])),
                                      sqlite3_value_bytes(values[place]))
                         : QByteArray();
}

QByteArray packedNote(const QByteArray &runs, const QByteArray & /*none*/)
{
    return Sample::gzipped(note(QJsonDocument::fromJson(runs).array()));
}

QByteArray packedTable(const QByteArray &cells, const QByteArray &shape)
{
    return Sample::gzipped(
        noteTable(QJsonDocument::fromJson(cells).array(), QJsonDocument::fromJson(shape).object()));
}

QByteArray packed(const QByteArray &bytes, const QByteArray & /*none*/)
{
    return Sample::gzipped(bytes);
}

QByteArray attributed(const QByteArray &text, const QByteArray & /*none*/)
{
    return Sample::attributedBody(QString::fromUtf8(text));
}

QByteArray propertyList(const QByteArray &json, const QByteArray & /*none*/)
{
    return Sample::binaryPropertyList(QJsonDocument::fromJson(json).toVariant());
}

using Function = QByteArray (*)(const QByteArray &, const QByteArray &);

void call(sqlite3_context *context, int count, sqlite3_value **values)
{
    const Function function = *static_cast<const Function *>(sqlite3_user_data(context));
    const QByteArray bytes = function(argument(count, values, 0), argument(count, values, 1));
    sqlite3_result_blob(context, bytes.constData(), int(bytes.size()), SQLITE_TRANSIENT);
}

int addFunctions(sqlite3 *database, const char ** /*error*/, const sqlite3_api_routines * /*api*/)
{
    static std::array functions { std::pair { "note", &packedNote },
                                  std::pair { "noteTable", &packedTable },
                                  std::pair { "gzip", &packed },
                                  std::pair { "attributed", &attributed },
                                  std::pair { "plist", &propertyList } };
    int code = SQLITE_OK;
    for (auto &[name, function] : functions) {
        if (code == SQLITE_OK) {
            code = sqlite3_create_function(database,
                                           name,
                                           -1,
                                           SQLITE_UTF8 | SQLITE_DETERMINISTIC,
                                           &function,
                                           &call,
                                           nullptr,
                                           nullptr);
        }
    }
    return code;
}

} // namespace

bool addCaseFunctions()
{
    return sqlite3_auto_extension(reinterpret_cast<void (*)()>(&addFunctions)) == SQLITE_OK;
}
