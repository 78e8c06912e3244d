// The platform's messages database ("/var/mobile/Library/SMS/sms.db"),
// trimmed to what the Messages application shows: handles (the other
// party's address and service), chats (one conversation each, joined to its
// handles) and messages (text, date in seconds since 2001, sent or received,
// read state, service "SMS" or "iMessage"), with the two join tables.
// Header-only: the device generator writes it, the Messages host reads it.
#pragma once

namespace zv::messages_schema {

inline constexpr char kMessagesDbPath[] = "/var/mobile/Library/SMS/sms.db";

inline constexpr char kServiceSMS[] = "SMS";
inline constexpr char kServiceIMessage[] = "iMessage";

inline constexpr char kSchemaSql[] = R"sql(
CREATE TABLE IF NOT EXISTS handle (
  ROWID INTEGER PRIMARY KEY AUTOINCREMENT UNIQUE, id TEXT NOT NULL,
  country TEXT, service TEXT NOT NULL, uncanonicalized_id TEXT,
  UNIQUE (id, service));
CREATE TABLE IF NOT EXISTS chat (
  ROWID INTEGER PRIMARY KEY AUTOINCREMENT, guid TEXT UNIQUE NOT NULL,
  style INTEGER, state INTEGER, account_id TEXT, properties BLOB,
  chat_identifier TEXT, service_name TEXT, room_name TEXT,
  account_login TEXT, is_archived INTEGER DEFAULT 0,
  last_addressed_handle TEXT, display_name TEXT, group_id TEXT);
CREATE TABLE IF NOT EXISTS message (
  ROWID INTEGER PRIMARY KEY AUTOINCREMENT, guid TEXT UNIQUE NOT NULL,
  text TEXT, handle_id INTEGER DEFAULT 0, service TEXT, account TEXT,
  date INTEGER, date_read INTEGER, date_delivered INTEGER,
  is_from_me INTEGER DEFAULT 0, is_read INTEGER DEFAULT 0,
  is_sent INTEGER DEFAULT 0, is_delivered INTEGER DEFAULT 0,
  cache_roomnames TEXT);
CREATE TABLE IF NOT EXISTS chat_handle_join (
  chat_id INTEGER REFERENCES chat (ROWID) ON DELETE CASCADE,
  handle_id INTEGER REFERENCES handle (ROWID) ON DELETE CASCADE,
  UNIQUE (chat_id, handle_id));
CREATE TABLE IF NOT EXISTS chat_message_join (
  chat_id INTEGER REFERENCES chat (ROWID) ON DELETE CASCADE,
  message_id INTEGER REFERENCES message (ROWID) ON DELETE CASCADE,
  PRIMARY KEY (chat_id, message_id));
CREATE INDEX IF NOT EXISTS message_idx_date ON message (date);
)sql";

}  // namespace zv::messages_schema
