#include "messages/recipients_file.h"

#include "platform/platform.h"

namespace zv::recipients_file {

std::vector<SMSRecipient> recipientsOf(const Value& list) {
  std::vector<SMSRecipient> out;
  const Array* entries = list.array();
  if (!entries) return out;
  for (const Value& entry : *entries) {
    const Array* texts = entry.array();
    if (!texts || texts->size() < 3) continue;
    SMSRecipient r;
    bool good = true;
    for (size_t i = 0; i < 3 && good; ++i) {
      // A text holding a NUL byte (a binary file can carry one) cannot be
      // written back: the file is saved as XML.
      const std::string* s = (*texts)[i].string();
      if (s && s->find('\0') == std::string::npos)
        r[i] = *s;
      else
        good = false;
    }
    if (good) out.push_back(std::move(r));
  }
  return out;
}

Value listValue(const std::vector<SMSRecipient>& recipients) {
  Array list;
  list.reserve(recipients.size());
  for (const auto& r : recipients) list.push_back(Array{r[0], r[1], r[2]});
  return list;
}

Dict read() {
  Dict lists;
  auto file = platform::readDictionary(kRecipientsPath);
  if (!file) return lists;
  for (const auto& [name, value] : *file) {
    auto recipients = recipientsOf(value);
    if (!recipients.empty()) lists.emplace(name, listValue(recipients));
  }
  return lists;
}

bool write(const Dict& lists) {
  return platform::writeDictionary(kRecipientsPath, lists);
}

}  // namespace zv::recipients_file
