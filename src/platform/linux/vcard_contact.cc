#include "platform/linux/vcard_contact.h"

#include <gio/gio.h>
#include <libebook-contacts/libebook-contacts.h>

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <functional>
#include <set>

#include "platform/db/platform_schema.h"

namespace zv::platform {
namespace {

namespace ps = platform_schema;

std::string upper(std::string s) {
  for (char& c : s)
    c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
  return s;
}

std::string field(EContact* c, EContactField f) {
  const char* v = static_cast<const char*>(e_contact_get_const(c, f));
  return v ? v : "";
}

// The TYPE parameters of an attribute, upper-cased (vCard 2.1's bare
// "TEL;CELL" arrives as TYPE too).
std::set<std::string> types(EVCardAttribute* attr) {
  std::set<std::string> out;
  for (GList* l = e_vcard_attribute_get_param(attr, EVC_TYPE); l; l = l->next)
    out.insert(upper(static_cast<const char*>(l->data)));
  return out;
}

std::string phoneLabel(const std::set<std::string>& t) {
  auto has = [&](const char* s) { return t.contains(s); };
  if (has("FAX")) {
    if (has("HOME")) return ps::kLabelHomeFax;
    if (has("WORK")) return ps::kLabelWorkFax;
    return ps::kLabelOtherFax;
  }
  if (has("CELL") || has("MOBILE")) return ps::kLabelMobile;
  if (has("IPHONE")) return ps::kLabelIPhone;
  if (has("PAGER")) return ps::kLabelPager;
  if (has("MAIN") || has("X-EVOLUTION-PRIMARY")) return ps::kLabelMain;
  if (has("HOME")) return ps::kLabelHome;
  if (has("WORK")) return ps::kLabelWork;
  if (has("OTHER")) return ps::kLabelOther;
  return "";
}

std::string emailLabel(const std::set<std::string>& t) {
  if (t.contains("HOME")) return ps::kLabelHome;
  if (t.contains("WORK")) return ps::kLabelWork;
  if (t.contains("OTHER")) return ps::kLabelOther;
  return "";
}

// vCard 4.0 writes numbers as URIs ("tel:+1-555-0100;ext=2").
std::string phoneText(std::string v) {
  if (upper(v.substr(0, 4)) == "TEL:") {
    v.erase(0, 4);
    v = v.substr(0, v.find(';'));
  }
  return v;
}

std::vector<ps::ExternalContact::Labelled> values(
    EContact* c, EContactField f,
    std::string (*label)(const std::set<std::string>&), bool phone) {
  std::vector<ps::ExternalContact::Labelled> out;
  GList* attrs = e_contact_get_attributes(c, f);
  for (GList* l = attrs; l; l = l->next) {
    auto* attr = static_cast<EVCardAttribute*>(l->data);
    char* raw = e_vcard_attribute_get_value(attr);
    std::string value = raw ? raw : "";
    g_free(raw);
    if (phone) value = phoneText(value);
    if (value.empty()) continue;
    out.push_back({label(types(attr)), value});
  }
  g_list_free_full(attrs,
                   reinterpret_cast<GDestroyNotify>(e_vcard_attribute_free));
  return out;
}

// Days from 1970-01-01 to a civil date (proleptic Gregorian).
int64_t daysFromCivil(int64_t y, unsigned m, unsigned d) {
  y -= m <= 2;
  const int64_t era = (y >= 0 ? y : y - 399) / 400;
  const unsigned yoe = static_cast<unsigned>(y - era * 400);
  const unsigned doy = (153 * (m + (m > 2 ? -3 : 9)) + 2) / 5 + d - 1;
  const unsigned doe = yoe * 365 + yoe / 4 - yoe / 100 + doy;
  return era * 146097 + static_cast<int64_t>(doe) - 719468;
}

std::optional<double> birthday(EContact* c) {
  auto* date =
      static_cast<EContactDate*>(e_contact_get(c, E_CONTACT_BIRTH_DATE));
  if (!date) return std::nullopt;
  std::optional<double> out;
  if (date->year > 0 && date->month >= 1 && date->month <= 12 &&
      date->day >= 1 && date->day <= 31)
    // Noon UTC, so the day is the same in every time zone.
    out =
        static_cast<double>(daysFromCivil(date->year, date->month, date->day)) *
            86400.0 +
        43200.0 - ps::kReferenceDateOffset;
  e_contact_date_free(date);
  return out;
}

std::string photo(EContact* c) {
  auto* p = static_cast<EContactPhoto*>(e_contact_get(c, E_CONTACT_PHOTO));
  if (!p) return "";
  std::string out;
  if (p->type == E_CONTACT_PHOTO_TYPE_INLINED) {
    if (p->data.inlined.data)
      out.assign(reinterpret_cast<const char*>(p->data.inlined.data),
                 p->data.inlined.length);
  } else if (p->data.uri && g_str_has_prefix(p->data.uri, "file:")) {
    // Evolution keeps larger pictures as files beside the book.
    GFile* file = g_file_new_for_uri(p->data.uri);
    char* bytes = nullptr;
    gsize size = 0;
    if (g_file_load_contents(file, nullptr, &bytes, &size, nullptr, nullptr))
      out.assign(bytes, size);
    g_free(bytes);
    g_object_unref(file);
  }
  e_contact_photo_free(p);
  return out;
}

}  // namespace

std::optional<ps::ExternalContact> externalContact(
    EContact* c, const std::string& idPrefix) {
  if (!c || e_contact_get(c, E_CONTACT_IS_LIST)) return std::nullopt;
  ps::ExternalContact out;
  if (auto* name =
          static_cast<EContactName*>(e_contact_get(c, E_CONTACT_NAME))) {
    auto text = [](const char* s) { return std::string(s ? s : ""); };
    out.first = text(name->given);
    out.last = text(name->family);
    out.middle = text(name->additional);
    out.prefix = text(name->prefixes);
    out.suffix = text(name->suffixes);
    e_contact_name_free(name);
  }
  out.organization = field(c, E_CONTACT_ORG);
  out.department = field(c, E_CONTACT_ORG_UNIT);
  out.jobTitle = field(c, E_CONTACT_TITLE);
  out.nickname = field(c, E_CONTACT_NICKNAME);
  out.note = field(c, E_CONTACT_NOTE);
  out.modificationTag = field(c, E_CONTACT_REV);
  out.birthday = birthday(c);
  out.photo = photo(c);
  out.phones = values(c, E_CONTACT_TEL, phoneLabel, true);
  out.emails = values(c, E_CONTACT_EMAIL, emailLabel, false);
  if (out.first.empty() && out.last.empty()) {
    const std::string full = field(c, E_CONTACT_FULL_NAME);
    if (!out.organization.empty() && (full.empty() || full == out.organization))
      out.kind = 1;  // a company's card
    else
      out.first = full;
  }
  std::string uid = field(c, E_CONTACT_UID);
  if (uid.empty()) {
    std::string key = out.first + '\x1f' + out.last + '\x1f' + out.organization;
    for (const auto& p : out.phones) key += '\x1f' + p.value;
    char hex[17];
    std::snprintf(hex, sizeof hex, "%016zx", std::hash<std::string>{}(key));
    uid = std::string("card-") + hex;
  }
  out.externalId = idPrefix + uid;
  return out;
}

std::vector<ps::ExternalContact> contactsFromVCards(const std::string& text,
                                                    const std::string& idPrefix,
                                                    int* unreadable) {
  // A .vcf file is cards one after another; each card from its BEGIN line
  // to its END line is handed to the parser whole.
  std::vector<ps::ExternalContact> out;
  *unreadable = 0;
  const std::string folded = upper(text);
  size_t at = 0;
  while (true) {
    const size_t begin = folded.find("BEGIN:VCARD", at);
    if (begin == std::string::npos) break;
    const size_t end = folded.find("END:VCARD", begin);
    if (end == std::string::npos) {
      ++*unreadable;
      break;
    }
    const std::string card = text.substr(begin, end + 9 - begin);
    at = end + 9;
    EContact* c = e_contact_new_from_vcard(card.c_str());
    auto contact = c ? externalContact(c, idPrefix) : std::nullopt;
    if (c) g_object_unref(c);
    if (contact && (contact->kind == 1 || !contact->first.empty() ||
                    !contact->last.empty() || !contact->phones.empty()))
      out.push_back(std::move(*contact));
    else if (!c)
      ++*unreadable;
  }
  return out;
}

}  // namespace zv::platform
