#include "sample/MessageSchema.h"

#include <array>

namespace Sample {

namespace {

//! What a release added to the tables of the one before.
struct Step
{
    int iosRelease;
    const char *sql;
};

constexpr std::array<Step, 9> kSteps { {
    { 6, R"(
CREATE TABLE _SqliteDatabaseProperties (key TEXT, value TEXT, UNIQUE(key));
CREATE TABLE handle (ROWID INTEGER PRIMARY KEY AUTOINCREMENT UNIQUE, id TEXT NOT NULL, country TEXT,
  service TEXT NOT NULL, uncanonicalized_id TEXT, UNIQUE (id, service));
CREATE TABLE chat (ROWID INTEGER PRIMARY KEY AUTOINCREMENT, guid TEXT UNIQUE NOT NULL, style INTEGER,
  state INTEGER, account_id TEXT, properties BLOB,
  chat_identifier TEXT, service_name TEXT, room_name TEXT, account_login TEXT, is_archived INTEGER DEFAULT 0,
  last_addressed_handle TEXT);
CREATE TABLE message (ROWID INTEGER PRIMARY KEY AUTOINCREMENT, guid TEXT UNIQUE NOT NULL, text TEXT,
  replace INTEGER DEFAULT 0, service_center TEXT,
  handle_id INTEGER DEFAULT 0, subject TEXT, country TEXT, attributedBody BLOB, version INTEGER DEFAULT 0,
  type INTEGER DEFAULT 0, service TEXT, account TEXT,
  account_guid TEXT, error INTEGER DEFAULT 0, date INTEGER, date_read INTEGER, date_delivered INTEGER,
  is_delivered INTEGER DEFAULT 0, is_finished INTEGER DEFAULT 0,
  is_emote INTEGER DEFAULT 0, is_from_me INTEGER DEFAULT 0, is_empty INTEGER DEFAULT 0,
  is_delayed INTEGER DEFAULT 0, is_auto_reply INTEGER DEFAULT 0,
  is_prepared INTEGER DEFAULT 0, is_read INTEGER DEFAULT 0, is_system_message INTEGER DEFAULT 0,
  is_sent INTEGER DEFAULT 0, has_dd_results INTEGER DEFAULT 0,
  is_service_message INTEGER DEFAULT 0, is_forward INTEGER DEFAULT 0, was_downgraded INTEGER DEFAULT 0,
  is_archive INTEGER DEFAULT 0,
  cache_has_attachments INTEGER DEFAULT 0, cache_roomnames TEXT, was_data_detected INTEGER DEFAULT 0,
  was_deduplicated INTEGER DEFAULT 0);
CREATE TABLE attachment (ROWID INTEGER PRIMARY KEY AUTOINCREMENT, guid TEXT UNIQUE NOT NULL,
  created_date INTEGER DEFAULT 0, start_date INTEGER DEFAULT 0,
  filename TEXT, uti TEXT, mime_type TEXT, transfer_state INTEGER DEFAULT 0, is_outgoing INTEGER DEFAULT 0);
CREATE TABLE chat_handle_join (chat_id INTEGER REFERENCES chat (ROWID) ON DELETE CASCADE,
  handle_id INTEGER REFERENCES handle (ROWID) ON DELETE CASCADE, UNIQUE(chat_id, handle_id));
CREATE TABLE chat_message_join (chat_id INTEGER REFERENCES chat (ROWID) ON DELETE CASCADE,
  message_id INTEGER REFERENCES message (ROWID) ON DELETE CASCADE, PRIMARY KEY (chat_id, message_id));
CREATE TABLE message_attachment_join (message_id INTEGER REFERENCES message (ROWID) ON DELETE CASCADE,
  attachment_id INTEGER REFERENCES attachment (ROWID) ON DELETE CASCADE, UNIQUE(message_id, attachment_id));
CREATE TABLE deleted_messages (ROWID INTEGER PRIMARY KEY AUTOINCREMENT UNIQUE, guid TEXT NOT NULL);
)" },
    { 8, R"(
ALTER TABLE chat ADD COLUMN display_name TEXT;
ALTER TABLE chat ADD COLUMN group_id TEXT;
ALTER TABLE chat ADD COLUMN is_filtered INTEGER DEFAULT 0;
ALTER TABLE chat ADD COLUMN successful_query INTEGER;
ALTER TABLE message ADD COLUMN is_audio_message INTEGER DEFAULT 0;
ALTER TABLE message ADD COLUMN is_played INTEGER DEFAULT 0;
ALTER TABLE message ADD COLUMN date_played INTEGER;
ALTER TABLE message ADD COLUMN item_type INTEGER DEFAULT 0;
ALTER TABLE message ADD COLUMN other_handle INTEGER DEFAULT 0;
ALTER TABLE message ADD COLUMN group_title TEXT;
ALTER TABLE message ADD COLUMN group_action_type INTEGER DEFAULT 0;
ALTER TABLE message ADD COLUMN share_status INTEGER DEFAULT 0;
ALTER TABLE message ADD COLUMN share_direction INTEGER DEFAULT 0;
ALTER TABLE message ADD COLUMN is_expirable INTEGER DEFAULT 0;
ALTER TABLE message ADD COLUMN expire_state INTEGER DEFAULT 0;
ALTER TABLE message ADD COLUMN message_action_type INTEGER DEFAULT 0;
ALTER TABLE message ADD COLUMN message_source INTEGER DEFAULT 0;
ALTER TABLE attachment ADD COLUMN user_info BLOB;
ALTER TABLE attachment ADD COLUMN transfer_name TEXT;
ALTER TABLE attachment ADD COLUMN total_bytes INTEGER DEFAULT 0;
)" },
    { 10, R"(
ALTER TABLE message ADD COLUMN associated_message_guid TEXT;
ALTER TABLE message ADD COLUMN associated_message_type INTEGER DEFAULT 0;
ALTER TABLE message ADD COLUMN balloon_bundle_id TEXT;
ALTER TABLE message ADD COLUMN payload_data BLOB;
ALTER TABLE message ADD COLUMN expressive_send_style_id TEXT;
ALTER TABLE message ADD COLUMN associated_message_range_location INTEGER DEFAULT 0;
ALTER TABLE message ADD COLUMN associated_message_range_length INTEGER DEFAULT 0;
ALTER TABLE message ADD COLUMN time_expressive_send_played INTEGER;
ALTER TABLE message ADD COLUMN message_summary_info BLOB;
ALTER TABLE attachment ADD COLUMN is_sticker INTEGER DEFAULT 0;
ALTER TABLE attachment ADD COLUMN sticker_user_info BLOB;
ALTER TABLE attachment ADD COLUMN attribution_info BLOB;
ALTER TABLE attachment ADD COLUMN hide_attachment INTEGER DEFAULT 0;
)" },
    { 11, R"(
ALTER TABLE message ADD COLUMN ck_sync_state INTEGER DEFAULT 0;
ALTER TABLE message ADD COLUMN ck_record_id TEXT;
ALTER TABLE message ADD COLUMN ck_record_change_tag TEXT;
ALTER TABLE message ADD COLUMN destination_caller_id TEXT;
ALTER TABLE message ADD COLUMN sr_ck_sync_state INTEGER DEFAULT 0;
ALTER TABLE message ADD COLUMN sr_ck_record_id TEXT;
ALTER TABLE message ADD COLUMN sr_ck_record_change_tag TEXT;
ALTER TABLE message ADD COLUMN is_corrupt INTEGER DEFAULT 0;
ALTER TABLE message ADD COLUMN reply_to_guid TEXT;
ALTER TABLE message ADD COLUMN sort_id INTEGER DEFAULT 0;
ALTER TABLE message ADD COLUMN is_spam INTEGER DEFAULT 0;
ALTER TABLE handle ADD COLUMN person_centric_id TEXT;
ALTER TABLE chat ADD COLUMN engram_id TEXT;
ALTER TABLE chat ADD COLUMN server_change_token TEXT;
ALTER TABLE chat ADD COLUMN ck_sync_state INTEGER DEFAULT 0;
ALTER TABLE chat ADD COLUMN original_group_id TEXT;
ALTER TABLE chat ADD COLUMN last_read_message_timestamp INTEGER DEFAULT 0;
ALTER TABLE chat ADD COLUMN last_addressed_sim_id TEXT;
ALTER TABLE chat ADD COLUMN is_blackholed INTEGER DEFAULT 0;
ALTER TABLE chat_message_join ADD COLUMN message_date INTEGER DEFAULT 0;
ALTER TABLE attachment ADD COLUMN ck_sync_state INTEGER DEFAULT 0;
ALTER TABLE attachment ADD COLUMN ck_record_id TEXT;
ALTER TABLE attachment ADD COLUMN original_guid TEXT;
)" },
    { 14, R"(
ALTER TABLE message ADD COLUMN has_unseen_mention INTEGER DEFAULT 0;
ALTER TABLE message ADD COLUMN thread_originator_guid TEXT;
ALTER TABLE message ADD COLUMN thread_originator_part TEXT;
)" },
    { 15, R"(
ALTER TABLE message ADD COLUMN syndication_ranges TEXT;
ALTER TABLE message ADD COLUMN synced_syndication_ranges TEXT;
ALTER TABLE message ADD COLUMN was_delivered_quietly INTEGER DEFAULT 0;
ALTER TABLE message ADD COLUMN did_notify_recipient INTEGER DEFAULT 0;
ALTER TABLE chat ADD COLUMN syndication_date INTEGER DEFAULT 0;
ALTER TABLE chat ADD COLUMN syndication_type INTEGER DEFAULT 0;
ALTER TABLE attachment ADD COLUMN is_commsafety_sensitive INTEGER DEFAULT 0;
)" },
    { 16, R"(
ALTER TABLE message ADD COLUMN date_retracted INTEGER DEFAULT 0;
ALTER TABLE message ADD COLUMN date_edited INTEGER DEFAULT 0;
ALTER TABLE message ADD COLUMN was_detonated INTEGER DEFAULT 0;
ALTER TABLE message ADD COLUMN part_count INTEGER;
ALTER TABLE chat ADD COLUMN is_recovered INTEGER DEFAULT 0;
CREATE TABLE chat_recoverable_message_join (chat_id INTEGER REFERENCES chat (ROWID) ON DELETE CASCADE,
  message_id INTEGER REFERENCES message (ROWID) ON DELETE CASCADE,
  delete_date INTEGER, ck_sync_state INTEGER DEFAULT 0, PRIMARY KEY (chat_id, message_id), CHECK (delete_date != 0));
CREATE TABLE recoverable_message_part (chat_id INTEGER, message_id INTEGER, part_index INTEGER,
  delete_date INTEGER, part_text BLOB NOT NULL, ck_sync_state INTEGER DEFAULT 0,
  PRIMARY KEY (chat_id, message_id, part_index), CHECK (delete_date != 0));
)" },
    { 17, R"(
ALTER TABLE message ADD COLUMN is_stewie INTEGER DEFAULT 0;
ALTER TABLE message ADD COLUMN is_sos INTEGER DEFAULT 0;
ALTER TABLE message ADD COLUMN is_critical INTEGER DEFAULT 0;
ALTER TABLE message ADD COLUMN fallback_hash TEXT;
)" },
    { 18, R"(
ALTER TABLE message ADD COLUMN associated_message_emoji TEXT;
ALTER TABLE message ADD COLUMN is_pending_satellite_send INTEGER DEFAULT 0;
ALTER TABLE message ADD COLUMN schedule_type INTEGER DEFAULT 0;
ALTER TABLE message ADD COLUMN schedule_state INTEGER DEFAULT 0;
ALTER TABLE message ADD COLUMN date_recovered INTEGER DEFAULT 0;
ALTER TABLE attachment ADD COLUMN emoji_image_short_description TEXT;
)" },
} };

constexpr const char *kIndexes = R"(
CREATE INDEX message_idx_date ON message(date);
CREATE INDEX message_idx_handle ON message(handle_id, date);
CREATE INDEX message_idx_failed ON message(is_finished, is_from_me, error);
CREATE INDEX message_idx_is_read ON message(is_read, is_from_me, is_finished);
CREATE INDEX chat_idx_chat_identifier ON chat(chat_identifier);
CREATE INDEX chat_handle_join_idx_handle_id ON chat_handle_join(handle_id);
CREATE INDEX chat_message_join_idx_message_id_only ON chat_message_join(message_id);
CREATE INDEX message_attachment_join_idx_attachment_id ON message_attachment_join(attachment_id);
)";

// They call functions that only the phone has; what reads the file must never set one off.
constexpr const char *kTriggers = R"(
CREATE TRIGGER after_delete_on_attachment AFTER DELETE ON attachment
  BEGIN SELECT delete_attachment_path(OLD.filename); END;
CREATE TRIGGER before_delete_on_attachment BEFORE DELETE ON attachment
  BEGIN SELECT before_delete_attachment_path(OLD.ROWID, OLD.guid); END;
CREATE TRIGGER after_delete_on_chat_message_join AFTER DELETE ON chat_message_join
  BEGIN SELECT after_delete_message_plugin(OLD.message_id); END;
)";

} // namespace

QByteArray messageTables(int iosRelease)
{
    QByteArray sql;
    for (const Step &step : kSteps) {
        if (step.iosRelease <= iosRelease)
            sql += step.sql;
    }
    return sql;
}

QByteArray messageIndexesAndTriggers(int iosRelease)
{
    QByteArray sql = kIndexes;
    if (iosRelease >= 10)
        sql += "CREATE INDEX message_idx_associated_message ON message(associated_message_guid);";
    if (iosRelease >= 11)
        sql += "CREATE INDEX chat_message_join_idx_message_date_id_chat_id "
               "ON chat_message_join(chat_id, message_date, message_id);";
    if (iosRelease >= 14)
        sql += "CREATE INDEX message_idx_thread_originator_guid "
               "ON message(thread_originator_guid);";
    return sql + kTriggers;
}

} // namespace Sample
