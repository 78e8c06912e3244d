#include "platform/db/contact_store.h"

#include <map>
#include <set>
#include <stdexcept>

#include "platform/db/platform_schema.h"
#include "platform/db/sqlite_db.h"

namespace zv::platform_schema {
namespace {

using sql::Statement;
using Connection = sql::Database;

// A connection that rolls back unless commit() ran.
class Transaction {
 public:
  Transaction(const std::string& file, Connection::Mode mode)
      : file_(file), db_(file, mode) {
    if (!db_.ok() || !db_.exec("BEGIN IMMEDIATE"))
      fail("cannot open for writing");
  }
  ~Transaction() {
    if (!committed_) db_.exec("ROLLBACK");
  }
  Connection& db() { return db_; }
  [[noreturn]] void fail(const std::string& what) {
    throw std::runtime_error(file_ + ": " + what + ": " + db_.error());
  }
  void run(Statement& s, const char* what) {
    s.step();
    if (!s.done()) fail(what);
  }
  void commit() {
    if (!db_.exec("COMMIT")) fail("cannot commit");
    committed_ = true;
  }

 private:
  std::string file_;
  Connection db_;
  bool committed_ = false;
};

void bindText(Statement& s, int i, const std::string& text) {
  if (text.empty()) {
    s.bindNull(i);
  } else {
    s.bindText(i, text);
  }
}

// Everything stored for one contact, as one text, to tell an unchanged
// contact from a changed one without comparing rows.
std::string fingerprint(const ExternalContact& c) {
  std::string out = c.modificationTag + '\x1f' + std::to_string(c.kind);
  for (const std::string* s :
       {&c.first, &c.last, &c.middle, &c.prefix, &c.suffix, &c.organization,
        &c.department, &c.jobTitle, &c.nickname, &c.note, &c.photo})
    out += '\x1f' + *s;
  out += '\x1f' + (c.birthday ? std::to_string(*c.birthday) : "");
  for (const auto* list : {&c.phones, &c.emails})
    for (const auto& v : *list) out += '\x1e' + v.label + '\x1d' + v.value;
  return std::to_string(std::hash<std::string>{}(out));
}

class BookWriter {
 public:
  explicit BookWriter(const std::string& file)
      : t_(file, Connection::Mode::kReadWrite),
        find_(t_.db(),
              "SELECT ROWID, ExternalModificationTag FROM ABPerson "
              "WHERE ExternalIdentifier = ?"),
        insert_(t_.db(),
                "INSERT INTO ABPerson (ExternalIdentifier, CreationDate, "
                "StoreID) VALUES (?, strftime('%s','now') - 978307200, 0)"),
        update_(t_.db(),
                "UPDATE ABPerson SET First=?, Last=?, Middle=?, Prefix=?, "
                "Suffix=?, Organization=?, Department=?, JobTitle=?, "
                "Nickname=?, Note=?, Kind=?, Birthday=?, "
                "ExternalModificationTag=?, "
                "ModificationDate=strftime('%s','now') - 978307200 "
                "WHERE ROWID=?"),
        clear_(t_.db(), "DELETE FROM ABMultiValue WHERE record_id=?"),
        value_(t_.db(),
               "INSERT INTO ABMultiValue (record_id, property, identifier, "
               "label, value) VALUES (?, ?, ?, ?, ?)"),
        label_(t_.db(),
               "INSERT OR IGNORE INTO ABMultiValueLabel (value) VALUES (?)"),
        labelId_(t_.db(), "SELECT ROWID FROM ABMultiValueLabel WHERE value=?"),
        erase_(t_.db(), "DELETE FROM ABPerson WHERE ROWID=?") {
    for (Statement* s : {&find_, &insert_, &update_, &clear_, &value_, &label_,
                         &labelId_, &erase_})
      if (!s->ok()) t_.fail("not an address book");
  }

  // The record of `c` and whether anything was written; `added` tells a new
  // record from an updated one.
  int64_t store(const ExternalContact& c, bool* changed, bool* added) {
    const std::string tag = fingerprint(c);
    Reset find(find_);
    find_.bindText(1, c.externalId);
    int64_t id = 0;
    *added = !find_.step();
    if (!*added) {
      id = find_.int64(0);
      if (find_.text(1).value_or("") == tag) {
        *changed = false;
        return id;
      }
    } else {
      if (!find_.done()) t_.fail("cannot read ABPerson");
      Reset r(insert_);
      insert_.bindText(1, c.externalId);
      t_.run(insert_, "cannot add a person");
      id = sqlite3_last_insert_rowid(t_.db().handle());
    }
    *changed = true;
    {
      Reset r(update_);
      int i = 1;
      for (const std::string* s :
           {&c.first, &c.last, &c.middle, &c.prefix, &c.suffix, &c.organization,
            &c.department, &c.jobTitle, &c.nickname, &c.note})
        bindText(update_, i++, *s);
      update_.bind(i++, c.kind);
      if (c.birthday) {
        update_.bindText(i++, std::to_string(*c.birthday));
      } else {
        update_.bindNull(i++);
      }
      update_.bindText(i++, tag);
      update_.bind(i++, id);
      t_.run(update_, "cannot update a person");
    }
    {
      Reset r(clear_);
      clear_.bind(1, id);
      t_.run(clear_, "cannot update numbers");
    }
    int identifier = 0;
    for (auto [property, list] : {std::pair{kPhoneProperty, &c.phones},
                                  std::pair{kEmailProperty, &c.emails}})
      for (const auto& v : *list) {
        Reset r(value_);
        value_.bind(1, id);
        value_.bind(2, property);
        value_.bind(3, identifier++);
        if (v.label.empty()) {
          value_.bindNull(4);
        } else {
          value_.bind(4, labelFor(v.label));
        }
        value_.bindText(5, v.value);
        t_.run(value_, "cannot add a number");
      }
    return id;
  }

  // Removes the external records not in `kept` that `mayRemove` accepts;
  // their record ids.
  std::vector<int64_t> prune(
      const std::set<std::string>& kept,
      const std::function<bool(const std::string&)>& mayRemove) {
    std::vector<int64_t> gone;
    {
      Statement all(t_.db(),
                    "SELECT ROWID, ExternalIdentifier FROM ABPerson "
                    "WHERE ExternalIdentifier IS NOT NULL");
      while (all.step()) {
        const std::string ext = all.text(1).value_or("");
        if (!kept.contains(ext) && mayRemove(ext)) gone.push_back(all.int64(0));
      }
      if (!all.done()) t_.fail("cannot read ABPerson");
    }
    for (int64_t id : gone) {
      for (Statement* s : {&clear_, &erase_}) {
        Reset r(*s);
        s->bind(1, id);
        t_.run(*s, "cannot remove a person");
      }
    }
    return gone;
  }

  void commit() { t_.commit(); }

 private:
  // Resets a statement for its next use, on every path.
  struct Reset {
    explicit Reset(Statement& s) : s_(s) {}
    ~Reset() { s_.reset(); }
    Statement& s_;
  };

  int64_t labelFor(const std::string& label) {
    auto it = labels_.find(label);
    if (it != labels_.end()) return it->second;
    {
      Reset r(label_);
      label_.bindText(1, label);
      t_.run(label_, "cannot add a label");
    }
    Reset r(labelId_);
    labelId_.bindText(1, label);
    if (!labelId_.step()) t_.fail("cannot read a label");
    return labels_[label] = labelId_.int64(0);
  }

  Transaction t_;
  Statement find_, insert_, update_, clear_, value_, label_, labelId_, erase_;
  std::map<std::string, int64_t> labels_;
};

class ImageWriter {
 public:
  explicit ImageWriter(const std::string& file)
      : t_(file, Connection::Mode::kReadWrite),
        thumbClear_(t_.db(), "DELETE FROM ABThumbnailImage WHERE record_id=?"),
        fullClear_(t_.db(), "DELETE FROM ABFullSizeImage WHERE record_id=?"),
        thumb_(t_.db(),
               "INSERT INTO ABThumbnailImage (record_id, format, data, crop_x, "
               "crop_y, crop_width, crop_height) VALUES (?, ?, ?, 0, 0, 0, 0)"),
        full_(t_.db(),
              "INSERT INTO ABFullSizeImage (record_id, data, crop_x, crop_y, "
              "crop_width, crop_height) VALUES (?, ?, 0, 0, 0, 0)") {
    for (Statement* s : {&thumbClear_, &fullClear_, &thumb_, &full_})
      if (!s->ok()) t_.fail("not an address-book picture database");
  }

  void set(int64_t id, const std::string& photo) {
    for (Statement* s : {&thumbClear_, &fullClear_}) {
      s->bind(1, id);
      t_.run(*s, "cannot remove a picture");
      s->reset();
    }
    if (photo.empty()) return;
    thumb_.bind(1, id);
    thumb_.bind(2, kThumbnailFormat);
    thumb_.bindBlob(3, photo);
    t_.run(thumb_, "cannot store a picture");
    thumb_.reset();
    full_.bind(1, id);
    full_.bindBlob(2, photo);
    t_.run(full_, "cannot store a picture");
    full_.reset();
  }
  void commit() { t_.commit(); }

 private:
  Transaction t_;
  Statement thumbClear_, fullClear_, thumb_, full_;
};

}  // namespace

StoreSummary storeContacts(
    const std::string& root, const std::vector<ExternalContact>& contacts,
    const std::function<bool(const std::string&)>& mayRemove) {
  const std::string book = root + kAddressBookPath;
  const std::string images = root + kAddressBookImagesPath;
  std::string error;
  if (!createDatabase(book, Database::kAddressBook, &error) ||
      !createDatabase(images, Database::kAddressBookImages, &error))
    throw std::runtime_error(error);
  StoreSummary summary;
  // The pictures first and committed last: a picture of a record that is
  // not (yet) there is never shown, a record without its picture would be.
  ImageWriter pictures(images);
  BookWriter writer(book);
  std::set<std::string> named;
  for (const auto& c : contacts) {
    if (!named.insert(c.externalId).second) continue;  // first one wins
    bool changed = false, added = false;
    const int64_t id = writer.store(c, &changed, &added);
    if (!changed) {
      ++summary.unchanged;
      continue;
    }
    ++(added ? summary.added : summary.updated);
    pictures.set(id, c.photo);
  }
  if (mayRemove)
    for (int64_t id : writer.prune(named, mayRemove)) {
      pictures.set(id, "");
      ++summary.removed;
    }
  writer.commit();
  pictures.commit();
  return summary;
}

}  // namespace zv::platform_schema
