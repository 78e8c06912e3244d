#include "hosts/kit/call_screens.h"

#include <algorithm>

#include "platform/db/phone_labels.h"
#include "platform/db/platform_schema.h"
#include "platform/db/sqlite_db.h"
#include "platform/platform.h"
#include "platform/ui/application.h"
#include "platform/ui/label.h"
#include "platform/ui/text_view.h"

namespace zv::hosts {
namespace {

struct PersonNames {
  std::string first, last, organization;
};

std::optional<PersonNames> readPerson(int64_t recordId) {
  sql::Database db(platform::current().path(platform_schema::kAddressBookPath));
  sql::Statement st(
      db, "SELECT First, Last, Organization FROM ABPerson WHERE ROWID = ?");
  st.bind(1, recordId);
  if (!st.step()) return std::nullopt;
  return PersonNames{st.text(0).value_or(""), st.text(1).value_or(""),
                     st.text(2).value_or("")};
}

}  // namespace

CallScreenLabels callerLabels(const platform::CallInfo& call) {
  CallScreenLabels labels;
  if (call.abUID != -1) {
    if (auto person = readPerson(call.abUID)) {
      const bool lastFirst = platform::current().device().nameOrderLastFirst;
      const std::string& a = lastFirst ? person->last : person->first;
      const std::string& b = lastFirst ? person->first : person->last;
      labels.name = a.empty() ? b : b.empty() ? a : a + " " + b;
      if (labels.name.empty()) {
        labels.name = person->organization;
      } else if (!person->organization.empty()) {
        labels.companyName = person->organization;
      }
      if (!call.contactLabel.empty())
        labels.label = copyLocalizedLabel(call.contactLabel);
    }
  }
  if (labels.name.empty())
    labels.name = call.destinationID.value_or(
        platform::current().localizedString("Unknown", "InCallService"));
  return labels;
}

std::optional<CallScreenText> currentCallScreenText() {
  auto* host = dynamic_cast<CallScreenHost*>(ui::UIApplication::shared().get());
  return host ? host->screenText() : std::nullopt;
}

void collectScreenTexts(const std::shared_ptr<ui::UIView>& view,
                        const std::vector<const ui::UIView*>& skip,
                        std::vector<std::string>& info,
                        std::vector<std::string>& labels) {
  if (!view || view->isHidden() || view->alpha() <= 0.01) return;
  if (std::find(skip.begin(), skip.end(), view.get()) == skip.end()) {
    if (auto* text = dynamic_cast<ui::UITextView*>(view.get())) {
      for (auto& line : text->lines()) info.push_back(line);
    } else if (auto* label = dynamic_cast<ui::UILabel*>(view.get())) {
      if (!label->text().empty()) labels.push_back(label->text());
    }
  }
  for (const auto& sub : view->subviews())
    collectScreenTexts(sub, skip, info, labels);
}

bool contactHasPicture(int32_t recordId) {
  if (recordId < 0) return false;
  sql::Database db(
      platform::current().path(platform_schema::kAddressBookImagesPath));
  sql::Statement st(db,
                    "SELECT COUNT(*) FROM ABThumbnailImage WHERE record_id = ? "
                    "AND length(data) > 0");
  st.bind(1, int64_t{recordId});
  return st.step() && st.int64(0) > 0;
}

}  // namespace zv::hosts

namespace zv::hosts {

void forgetOldEndedCalls(std::vector<ScreenedCall>& calls) {
  size_t ended = std::count_if(calls.begin(), calls.end(), [](const auto& c) {
    return c.status == platform::kCallEnded;
  });
  if (ended <= kEndedCallsKept) return;
  size_t drop = ended - kEndedCallsKept;
  std::erase_if(calls, [&](const ScreenedCall& c) {
    if (drop == 0 || c.status != platform::kCallEnded) return false;
    --drop;
    return true;
  });
}

}  // namespace zv::hosts
