// The Messages part of a generated device image: the messages database
// (conversations with Chinese and Western contacts, service numbers and
// strangers, some unread), address-book groups for the recipient-group
// screen, and the checklist's check-mark pictures.
#include <cmath>
#include <filesystem>
#include <memory>
#include <stdexcept>
#include <vector>

#include "devicegen/device_image.h"
#include "devicegen/sqlite_writer.h"
#include "platform/db/messages_schema.h"
#include "platform/db/platform_schema.h"
#include "platform/plist.h"
#include "platform/ui/image.h"

namespace zv {
namespace {

namespace fs = std::filesystem;
namespace ms = messages_schema;

bool isChinese(const DeviceContact& c) {
  return !c.last.empty() && static_cast<unsigned char>(c.last[0]) >= 0x80;
}

struct Conversation {
  std::string address;
  bool chinese = false;
  bool unread = false;
  bool iMessage = false;
};

// Two short exchanges per language, the newest message last.
const std::vector<std::vector<std::pair<bool, std::string>>> kChinese{
    {{false, "晚上一起吃饭吗？"},
     {true, "好的，七点老地方见。"},
     {false, "我先去订位子。"}},
    {{true, "文件我已经发到你邮箱了。"}, {false, "收到，谢谢！"}},
    {{false, "明天的会议改到下午三点。"},
     {true, "知道了。"},
     {false, "记得带上周的报表。"}},
};
const std::vector<std::vector<std::pair<bool, std::string>>> kWestern{
    {{false, "Are we still on for Friday?"}, {true, "Yes, see you at 7."}},
    {{true, "Running ten minutes late, sorry."},
     {false, "No problem, I'll grab a table."}},
    {{false, "Can you send me the slides from today?"},
     {true, "Sent. Let me know if anything is missing."},
     {false, "Got them, thanks!"}},
};
const std::vector<std::pair<std::string, std::string>> kStrangers{
    {"10086", "【中国移动】您本月套餐余量：通话 120 分钟，流量 350MB。"},
    {"13811112222", "你好，我是快递员，包裹放在前台了。"},
    {"+1 415 555 0100", "Your verification code is 482913."},
};

std::vector<Conversation> pickConversations(const DevicePeople& people) {
  std::vector<Conversation> out;
  int chinese = 0, western = 0;
  // Skip the owner's card (record 1).
  for (const DeviceContact& c : people.contacts) {
    if (c.recordId == 1 || c.phones.empty() || c.kind != 0) continue;
    const bool zh = isChinese(c);
    int& count = zh ? chinese : western;
    if (count >= 3) continue;
    ++count;
    out.push_back({c.phones.front().text, zh, false, !zh && count == 2});
    if (chinese >= 3 && western >= 3) break;
  }
  return out;
}

void writeMessagesDb(const std::string& file, const DevicePeople& people) {
  fs::create_directories(fs::path(file).parent_path());
  SqliteWriter db(file, SqliteWriter::Open::kFresh);
  db.exec(ms::kSchemaSql);
  sql::Statement handle = db.prepare(
      "INSERT INTO handle (id, country, service, uncanonicalized_id) "
      "VALUES (?, ?, ?, ?)");
  sql::Statement chat = db.prepare(
      "INSERT INTO chat (guid, style, state, chat_identifier, service_name) "
      "VALUES (?, 45, 3, ?, ?)");
  sql::Statement chatHandle = db.prepare(
      "INSERT INTO chat_handle_join (chat_id, handle_id) VALUES (?, ?)");
  sql::Statement message = db.prepare(
      "INSERT INTO message (guid, text, handle_id, service, date, date_read, "
      "date_delivered, is_from_me, is_read, is_sent, is_delivered) "
      "VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)");
  sql::Statement chatMessage = db.prepare(
      "INSERT INTO chat_message_join (chat_id, message_id) VALUES (?, ?)");

  auto conversations = pickConversations(people);
  std::vector<std::vector<std::pair<bool, std::string>>> texts;
  for (size_t i = 0; i < conversations.size(); ++i) {
    const auto& pool = conversations[i].chinese ? kChinese : kWestern;
    texts.push_back(pool[i % pool.size()]);
  }
  for (const auto& [address, text] : kStrangers) {
    conversations.push_back({address, address[0] != '+', false, false});
    texts.push_back({{false, text}});
  }
  // Every third conversation, and the first stranger, wait unread.
  for (size_t i = 0; i < conversations.size(); ++i)
    conversations[i].unread = i % 3 == 0;

  int64_t messageNo = 0;
  for (size_t i = 0; i < conversations.size(); ++i) {
    const Conversation& c = conversations[i];
    const std::string service =
        c.iMessage ? ms::kServiceIMessage : ms::kServiceSMS;
    handle.bindText(1, c.address);
    handle.bindText(2, c.address[0] == '+' ? "us" : "cn");
    handle.bindText(3, service);
    handle.bindText(4, c.address);
    db.run(handle);
    const int64_t handleId = db.lastId();
    const std::string chatGuid = service + ";-;" + c.address;
    chat.bindText(1, chatGuid);
    chat.bindText(2, c.address);
    chat.bindText(3, service);
    db.run(chat);
    const int64_t chatId = db.lastId();
    chatHandle.bind(1, chatId);
    chatHandle.bind(2, handleId);
    db.run(chatHandle);
    // Conversations are half a day apart, newest first; messages within
    // one are six minutes apart.
    const auto& lines = texts[i];
    const double last = kDeviceNow - 43200.0 * static_cast<double>(i);
    for (size_t m = 0; m < lines.size(); ++m) {
      const bool fromMe = lines[m].first;
      const bool newest = m + 1 == lines.size();
      const bool read = fromMe || !(c.unread && newest);
      const int64_t date = static_cast<int64_t>(
          last - 360.0 * static_cast<double>(lines.size() - 1 - m));
      message.bindText(1, "D0C5A11E-" + std::to_string(++messageNo));
      message.bindText(2, lines[m].second);
      message.bind(3, handleId);
      message.bindText(4, service);
      message.bind(5, date);
      message.bind(6, read && !fromMe ? date + 60 : 0);
      message.bind(7, fromMe ? date + 2 : 0);
      message.bind(8, fromMe);
      message.bind(9, read);
      message.bind(10, fromMe);
      message.bind(11, fromMe);
      db.run(message);
      chatMessage.bind(1, chatId);
      chatMessage.bind(2, db.lastId());
      db.run(chatMessage);
    }
  }
  db.commit();
}

// Three groups of people with numbers: Chinese names, Western names, and a
// mixed one; plus an empty group, as the platform allows.
void writeGroups(const std::string& addressBook, const DevicePeople& people) {
  std::vector<int64_t> chinese, western;
  for (const DeviceContact& c : people.contacts) {
    if (c.recordId == 1 || c.phones.empty() || c.kind != 0) continue;
    auto& into = isChinese(c) ? chinese : western;
    if (into.size() < 6) into.push_back(c.recordId);
  }
  std::vector<int64_t> mixed;
  for (size_t i = 0; i < 3; ++i) {
    if (i < chinese.size()) mixed.push_back(chinese[i]);
    if (i < western.size()) mixed.push_back(western[i]);
  }
  const std::vector<std::pair<std::string, std::vector<int64_t>>> groups{
      {"家人", chinese},
      {"Colleagues", western},
      {"Friends", mixed},
      {"Book Club", {}}};
  SqliteWriter db(addressBook, SqliteWriter::Open::kExisting);
  sql::Statement group =
      db.prepare("INSERT INTO ABGroup (Name, StoreID) VALUES (?, 0)");
  sql::Statement member = db.prepare(
      "INSERT INTO ABGroupMembers (group_id, member_type, member_id) "
      "VALUES (?, 0, ?)");
  for (const auto& [name, members] : groups) {
    group.bindText(1, name);
    db.run(group);
    const int64_t id = db.lastId();
    for (int64_t m : members) {
      member.bind(1, id);
      member.bind(2, m);
      db.run(member);
    }
  }
  db.commit();
}

// A round check mark, `size` pixels square: a filled blue disc with a white
// tick when checked, a thin grey ring when not.
std::string checkMark(bool checked, int size) {
  std::vector<uint8_t> rgba(static_cast<size_t>(size) * size * 4, 0);
  const double c = size / 2.0, outer = size * 0.45, ring = size * 0.05;
  // The tick: two strokes through three points, as fractions of the size.
  const double ax = 0.28 * size, ay = 0.52 * size, bx = 0.44 * size,
               by = 0.67 * size, dx = 0.73 * size, dy = 0.36 * size;
  const double stroke = size * 0.06;
  auto segmentDistance = [](double px, double py, double x0, double y0,
                            double x1, double y1) {
    const double vx = x1 - x0, vy = y1 - y0;
    double t = ((px - x0) * vx + (py - y0) * vy) / (vx * vx + vy * vy);
    t = std::fmax(0.0, std::fmin(1.0, t));
    return std::hypot(px - (x0 + t * vx), py - (y0 + t * vy));
  };
  for (int y = 0; y < size; ++y) {
    for (int x = 0; x < size; ++x) {
      const double px = x + 0.5, py = y + 0.5;
      const double d = std::hypot(px - c, py - c);
      uint8_t* p = &rgba[(static_cast<size_t>(y) * size + x) * 4];
      auto set = [p](uint8_t r, uint8_t g, uint8_t b) {
        p[0] = r, p[1] = g, p[2] = b, p[3] = 255;
      };
      if (checked) {
        if (d > outer) continue;
        const bool tick = segmentDistance(px, py, ax, ay, bx, by) <= stroke ||
                          segmentDistance(px, py, bx, by, dx, dy) <= stroke;
        if (tick)
          set(255, 255, 255);
        else
          set(0, 122, 255);
      } else if (d <= outer && d >= outer - ring) {
        set(199, 199, 204);
      }
    }
  }
  return ui::Image(size, size, 2, std::move(rgba)).encodePng();
}

std::string hostPath(const std::string& root, const char* devicePath) {
  return (fs::path(root) / fs::path(devicePath).relative_path()).string();
}

void writeBytes(const std::string& target, const std::string& bytes) {
  fs::create_directories(fs::path(target).parent_path());
  if (!plist::writeBytesAtomically(target, bytes))
    throw std::runtime_error(target + ": cannot write");
}

}  // namespace

void writeMessagesData(const std::string& root, const DevicePeople& people) {
  writeMessagesDb(hostPath(root, ms::kMessagesDbPath), people);
  writeGroups(hostPath(root, platform_schema::kAddressBookPath), people);
  writeBytes(hostPath(root, "/Library/Zorvel/checked.png"),
             checkMark(true, kCheckMarkSize));
  writeBytes(hostPath(root, "/Library/Zorvel/notchecked.png"),
             checkMark(false, kCheckMarkSize));
}

}  // namespace zv
