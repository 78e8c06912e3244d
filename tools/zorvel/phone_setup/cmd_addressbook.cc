// zorvel addressbook sync|import: the user's own contacts in the device's
// address book. `sync` copies every contact of Evolution Data Server (with
// its numbers and labels, organisation, department, job title, nickname,
// birthday, note and picture), updating the ones synced before and removing
// the ones deleted there; `import FILE.vcf...` does the same for vCard
// files (2.1, 3.0, 4.0), adding and updating but never removing. Contacts
// made on the device are never touched. Every file is read and parsed
// before anything is written.
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include "platform/linux/eds_address_book.h"
#include "platform/linux/vcard_contact.h"
#include "platform/platform.h"
#include "platform/plist.h"
#include "tools/zorvel/command.h"
#include "tools/zorvel/phone_setup/contacts_sync.h"

namespace zv::cli {
namespace {

struct Options {
  std::string root;
  std::vector<std::string> files;
};

void sync(const Options& o) {
  applyRoot(o.root);
  const platform::EdsSnapshot snap = platform::readEdsContacts();
  if (!snap.reachable) throw CommandError(snap.problem);
  if (!snap.problem.empty())
    std::fprintf(stderr, "zorvel: %s; its contacts are kept as they were\n",
                 snap.problem.c_str());
  auto s =
      storeAndMark(platform::current().root(), snap.contacts,
                   [&snap](const std::string& id) { return snap.gone(id); });
  std::printf("%s\n", summaryText(s).c_str());
}

void import(const Options& o) {
  applyRoot(o.root);
  std::vector<platform_schema::ExternalContact> contacts;
  for (const auto& file : o.files) {
    std::string text;
    if (!plist::readBytes(file, text))
      throw CommandError("cannot read " + file);
    int unreadable = 0;
    auto cards = platform::contactsFromVCards(text, "vcard:", &unreadable);
    if (cards.empty() && unreadable == 0)
      throw CommandError(file + " holds no vCard");
    if (unreadable)
      throw CommandError(file + ": " + std::to_string(unreadable) +
                         " card(s) do not parse; nothing imported");
    for (auto& c : cards) contacts.push_back(std::move(c));
  }
  auto s = storeAndMark(platform::current().root(), contacts);
  std::printf("%s\n", summaryText(s).c_str());
}

Registration reg([](CLI::App& app) {
  auto* cmd = app.add_subcommand(
      "addressbook", "the user's own contacts in the device's address book");
  cmd->require_subcommand(1);
  auto o = std::make_shared<Options>();
  auto* s = cmd->add_subcommand(
      "sync",
      "copy every contact of Evolution Data Server into the device "
      "(updating and removing the ones synced before)");
  addRootOption(*s, o->root);
  s->callback([o] { sync(*o); });
  auto* i = cmd->add_subcommand(
      "import", "add or update the contacts of vCard files (2.1, 3.0, 4.0)");
  addRootOption(*i, o->root);
  i->add_option("FILE", o->files, ".vcf file")->required();
  i->callback([o] { import(*o); });
});

}  // namespace
}  // namespace zv::cli
