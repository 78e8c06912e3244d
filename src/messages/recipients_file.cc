#include "messages/recipients_file.h"

#include "platform/platform.h"

namespace zv::recipients_file {

std::vector<SMSRecipient> recipientsOf(const Value& list) {
  std::vector<SMSRecipient> out;
  const Array* entries = list.array();
  if (!entries) return out;
  for (const Value& entry : *entries) {
    SMSRecipient r;
    if (const std::string* address = entry.string()) {
      r[0] = *address;
    } else if (const Array* texts = entry.array()) {
      for (size_t i = 0; i < 3 && i < texts->size(); ++i)
        if (const std::string* s = (*texts)[i].string()) r[i] = *s;
    }
    if (!r[0].empty()) out.push_back(std::move(r));
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
  auto file = platform::readDictionary(kRecipientsPath);
  return file ? std::move(*file) : Dict{};
}

bool write(const Dict& lists) {
  return platform::writeDictionary(kRecipientsPath, lists);
}

}  // namespace zv::recipients_file
