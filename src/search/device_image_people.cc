#include "search/device_image_people.h"

#include <algorithm>
#include <cstdio>

#include "platform/db/platform_schema.h"
#include "search/device_image_numbers.h"
#include "search/device_image_random.h"

namespace zv {
namespace {

namespace ps = platform_schema;

struct Named {
  const char* text;
  char initial;  // first letter of its reading, drawn on pictures
};

// Common surnames, the most frequent repeated so that they turn up about as
// often as they do in a real address book.
constexpr Named kSurnames[] = {
    {"王", 'W'},   {"李", 'L'},   {"张", 'Z'},   {"刘", 'L'},  {"陈", 'C'},
    {"王", 'W'},   {"李", 'L'},   {"张", 'Z'},   {"刘", 'L'},  {"陈", 'C'},
    {"杨", 'Y'},   {"黄", 'H'},   {"赵", 'Z'},   {"吴", 'W'},  {"周", 'Z'},
    {"徐", 'X'},   {"孙", 'S'},   {"马", 'M'},   {"朱", 'Z'},  {"胡", 'H'},
    {"郭", 'G'},   {"何", 'H'},   {"高", 'G'},   {"林", 'L'},  {"罗", 'L'},
    {"郑", 'Z'},   {"梁", 'L'},   {"谢", 'X'},   {"宋", 'S'},  {"唐", 'T'},
    {"许", 'X'},   {"韩", 'H'},   {"冯", 'F'},   {"邓", 'D'},  {"曹", 'C'},
    {"彭", 'P'},   {"曾", 'Z'},   {"肖", 'X'},   {"田", 'T'},  {"董", 'D'},
    {"袁", 'Y'},   {"潘", 'P'},   {"于", 'Y'},   {"蒋", 'J'},  {"蔡", 'C'},
    {"余", 'Y'},   {"杜", 'D'},   {"叶", 'Y'},   {"程", 'C'},  {"苏", 'S'},
    {"魏", 'W'},   {"吕", 'L'},   {"丁", 'D'},   {"任", 'R'},  {"沈", 'S'},
    {"姚", 'Y'},   {"卢", 'L'},   {"姜", 'J'},   {"崔", 'C'},  {"钟", 'Z'},
    {"谭", 'T'},   {"陆", 'L'},   {"汪", 'W'},   {"范", 'F'},  {"金", 'J'},
    {"石", 'S'},   {"廖", 'L'},   {"贾", 'J'},   {"夏", 'X'},  {"韦", 'W'},
    {"方", 'F'},   {"白", 'B'},   {"邹", 'Z'},   {"孟", 'M'},  {"熊", 'X'},
    {"秦", 'Q'},   {"邱", 'Q'},   {"江", 'J'},   {"尹", 'Y'},  {"薛", 'X'},
    {"段", 'D'},   {"雷", 'L'},   {"侯", 'H'},   {"龙", 'L'},  {"史", 'S'},
    {"欧阳", 'O'}, {"司马", 'S'}, {"诸葛", 'Z'}, {"上官", 'S'}};

constexpr const char* kGivenChars[] = {
    "伟", "芳", "娜", "敏", "静", "丽", "强", "磊", "军", "洋", "勇", "艳",
    "杰", "娟", "涛", "明", "超", "秀", "霞", "平", "刚", "英", "华", "玉",
    "兰", "萍", "红", "鹏", "飞", "斌", "宇", "浩", "凯", "健", "俊", "帆",
    "旭", "宁", "林", "欣", "怡", "婷", "雪", "琳", "晨", "晓", "子", "涵",
    "梓", "轩", "诺", "思", "雨", "嘉", "博", "文", "佳", "志", "建", "国",
    "海", "云", "春", "梅", "玲", "燕", "丹", "亮", "成", "晶", "慧", "峰"};

constexpr const char* kWesternFirst[] = {
    "James", "John",     "Robert",   "Michael", "William",   "David",
    "Mary",  "Patricia", "Jennifer", "Linda",   "Elizabeth", "Anna",
    "Maria", "Sarah",    "Emma",     "Olivia",  "Thomas",    "Daniel",
    "Laura", "Sophie",   "Peter",    "Paul",    "Lucas",     "Chloe",
    "Al",    "Jo",       "Wei",      "Li",      "Ming",      "Xiaoling"};

constexpr const char* kWesternLast[] = {
    "Smith",  "Johnson", "Williams", "Brown",   "Jones",  "Miller",
    "Davis",  "Garcia",  "Lopez",    "Wilson",  "Martin", "Anderson",
    "Taylor", "Thomas",  "Moore",    "Jackson", "Lee",    "White",
    "Harris", "Clark",   "Lewis",    "Walker",  "Young",  "King",
    "Wright", "Scott",   "Green",    "Baker",   "B",      "Wang",
    "Zhang",  "Chen",    "Na",       "O'Brien", "Müller", "Nguyen"};

constexpr const char* kMiddle[] = {"Maria", "J.", "Lee", "Ann", "Paul"};

struct Company {
  const char* name;
  char initial;
  bool service;  // reached through a service or hotline number
};
constexpr Company kCompanies[] = {
    {"中国移动", 'Z', true},    {"中国联通", 'Z', true},
    {"招商银行", 'Z', true},    {"中国工商银行", 'Z', true},
    {"顺丰速运", 'S', true},    {"携程旅行网", 'X', true},
    {"铁路客服", 'T', true},    {"肯德基宅急送", 'K', true},
    {"物业管理处", 'W', false}, {"链家地产", 'L', false},
    {"海底捞火锅", 'H', false}, {"小区门卫", 'X', false},
    {"Pizza Hut", 'P', true},   {"Starbucks Reserve", 'S', false},
    {"DHL Express", 'D', true}, {"Apple Store", 'A', true},
    {"国家电网", 'G', true},    {"上海市第一人民医院", 'S', false}};

constexpr const char* kOrganizations[] = {
    "华为技术有限公司", "腾讯科技", "阿里巴巴", "百度",      "小米科技",
    "中兴通讯",         "联想集团", "京东",     "网易",      "上海浦东发展银行",
    "中国石化",         "北京大学", "复旦大学", "Acme Corp", "Google",
    "Microsoft",        "Siemens",  "Deloitte", "HSBC",      "IBM China"};
constexpr const char* kDepartments[] = {
    "研发部",   "市场部",      "销售部", "人事部",    "财务部",
    "技术支持", "Engineering", "Sales",  "Marketing", "Finance"};
constexpr const char* kJobTitles[] = {"经理",
                                      "总监",
                                      "工程师",
                                      "高级工程师",
                                      "主管",
                                      "助理",
                                      "总经理",
                                      "副总裁",
                                      "Software Engineer",
                                      "Product Manager",
                                      "Director",
                                      "Consultant",
                                      "Sales Manager"};
constexpr const char* kNicknames[] = {"老王", "小李", "阿强", "胖子",
                                      "Bob",  "Jim",  "Kiki", "Boss"};
constexpr const char* kNotes[] = {"大学同学",
                                  "高中同学",
                                  "邻居",
                                  "客户",
                                  "同事",
                                  "房东",
                                  "大学同学\n住在浦东",
                                  "Met at the Canton Fair",
                                  "Dentist",
                                  "Call after 6pm"};

constexpr const char* kMailDomains[] = {"163.com", "qq.com", "126.com",
                                        "gmail.com", "example.com"};

// ABMultiValueLabel rows in ROWID order: the platform's keys first, then
// labels users typed themselves.
constexpr const char* kLabels[] = {ps::kLabelMobile,
                                   ps::kLabelIPhone,
                                   ps::kLabelHome,
                                   ps::kLabelWork,
                                   ps::kLabelMain,
                                   ps::kLabelHomeFax,
                                   ps::kLabelWorkFax,
                                   ps::kLabelOtherFax,
                                   ps::kLabelPager,
                                   ps::kLabelOther,
                                   "公司",
                                   "宅电",
                                   "Office"};
enum Label {
  kNoLabel = 0,
  kMobile = 1,
  kIPhone,
  kHome,
  kWork,
  kMain,
  kHomeFax,
  kWorkFax,
  kOtherFax,
  kPager,
  kOther,
  kCompanyCustom,
  kHomeCustom,
  kOfficeCustom
};

constexpr int64_t kDay = 86400;

int mobileLabel(DeviceRandom& r) {
  int x = r.uniform(0, 9);
  return x < 6 ? kMobile : x < 8 ? kIPhone : x < 9 ? kOther : kNoLabel;
}

int fixedLabel(DeviceRandom& r) {
  constexpr int kChoices[] = {
      kHome,          kWork,       kMain,         kWork,    kHome,
      kCompanyCustom, kHomeCustom, kOfficeCustom, kWorkFax, kNoLabel};
  return r.pick(kChoices);
}

void addPhone(DeviceContact& c, device_numbers::Number n, int label) {
  c.phones.push_back({std::move(n.text), std::move(n.dialable), label});
}

void nameChinese(DeviceContact& c, DeviceRandom& r) {
  const Named& surname = r.pick(kSurnames);
  std::string given = r.pick(kGivenChars);
  if (r.chance(0.6)) given += r.pick(kGivenChars);
  c.initial = surname.initial;
  // Many people type the whole name into one field.
  if (r.chance(0.15)) {
    c.first = surname.text + given;
  } else {
    c.last = surname.text;
    c.first = given;
  }
  if (r.chance(0.08)) c.nickname = r.pick(kNicknames);
}

void nameWestern(DeviceContact& c, DeviceRandom& r) {
  c.first = r.pick(kWesternFirst);
  if (r.chance(0.9)) c.last = r.pick(kWesternLast);
  if (r.chance(0.1)) c.middle = r.pick(kMiddle);
  c.initial = c.first[0];
  if (r.chance(0.05)) c.nickname = r.pick(kNicknames);
}

void fillPerson(DeviceContact& c, DeviceRandom& r,
                std::vector<std::string>& homeNumbers) {
  if (r.chance(0.7)) {
    nameChinese(c, r);
  } else {
    nameWestern(c, r);
  }
  if (r.chance(0.4)) {
    c.organization = r.pick(kOrganizations);
    if (r.chance(0.5)) c.department = r.pick(kDepartments);
    if (r.chance(0.6)) c.jobTitle = r.pick(kJobTitles);
  }
  if (r.chance(0.3)) {
    // 1950-01-01 .. 2005-12-31, at noon UTC so that the day is the same in
    // every time zone.
    int64_t day = r.uniform(-18628, 1825);
    c.birthday = day * kDay + kDay / 2;
  }
  if (r.chance(0.1)) c.note = r.pick(kNotes);

  int count = r.uniform(0, 19);
  count = count < 12 ? 1 : count < 17 ? 2 : count < 19 ? 3 : 4;
  for (int i = 0; i < count; ++i) {
    int kind = i == 0 ? (r.chance(0.85) ? 0 : 1) : r.uniform(0, 5);
    if (kind <= 1 && i > 0 && !homeNumbers.empty() && r.chance(0.1)) {
      // A household line shared with someone already in the book.
      const std::string& shared = homeNumbers[r.next() % homeNumbers.size()];
      c.phones.push_back({shared, device_numbers::dialable(shared), kHome});
    } else if (kind == 0 || kind == 2 || kind == 3) {
      addPhone(c, device_numbers::mobile(r), mobileLabel(r));
    } else if (kind == 5 && r.chance(0.3)) {
      addPhone(c, device_numbers::foreign(r), kMobile);
    } else {
      int label = fixedLabel(r);
      addPhone(c, device_numbers::fixed(r), label);
      if (label == kHome) homeNumbers.push_back(c.phones.back().text);
    }
  }
  if (r.chance(0.2)) {
    char user[48];
    std::snprintf(user, sizeof user, "%c%lld", c.initial + ('a' - 'A'),
                  static_cast<long long>(10000 + c.recordId * 7));
    c.emails.push_back({std::string(user) + "@" + r.pick(kMailDomains), kHome});
  }
}

void fillCompany(DeviceContact& c, DeviceRandom& r) {
  const Company& company = r.pick(kCompanies);
  c.kind = 1;
  c.organization = company.name;
  c.initial = company.initial;
  if (company.service) {
    addPhone(c, device_numbers::service(r), kMain);
  } else {
    addPhone(c, device_numbers::fixed(r), kWork);
  }
  if (r.chance(0.3)) addPhone(c, device_numbers::fixed(r), kWorkFax);
}

// The owner's card: a Shanghai mobile and office line, with a picture.
void fillOwner(DeviceContact& c, DeviceRandom& r) {
  nameChinese(c, r);
  c.organization = r.pick(kOrganizations);
  c.jobTitle = r.pick(kJobTitles);
  addPhone(c, device_numbers::styleMobile(device_numbers::mobileDigits(r), r),
           kIPhone);
  std::string office = "021-6" + std::to_string(r.uniform(1000000, 9999999));
  addPhone(c, {office, device_numbers::dialable(office)}, kWork);
  c.picture = DevicePicture::kJpeg;
}

void choosePicture(DeviceContact& c, DeviceRandom& r) {
  c.colour = static_cast<uint32_t>(r.next() % 12);
  if (c.picture == DevicePicture::kNone && r.chance(0.2))
    c.picture = r.chance(0.67) ? DevicePicture::kJpeg : DevicePicture::kPng;
  if (c.picture != DevicePicture::kNone && c.recordId != 1)
    c.emptyThumbnailRow = r.chance(0.12);
}

std::vector<DeviceCall> makeCalls(const std::vector<DeviceContact>& contacts,
                                  int count, DeviceRandom& r) {
  // Unknown callers come from a pool so that some of them call repeatedly.
  std::vector<std::string> strangers;
  int poolSize = std::max(1, count / 4);
  for (int i = 0; i < poolSize; ++i) {
    int kind = r.uniform(0, 9);
    strangers.push_back(kind < 6   ? device_numbers::mobileDigits(r)
                        : kind < 9 ? device_numbers::fixedDigits(r)
                                   : device_numbers::serviceDigits(r));
  }
  // Dates: spread over the 90 days before kDeviceNow, strictly increasing,
  // with fractions of a second as the platform records them.
  std::vector<double> dates;
  for (int i = 0; i < count; ++i)
    dates.push_back(kDeviceNow - r.unit() * 90.0 * kDay);
  std::sort(dates.begin(), dates.end());
  for (size_t i = 1; i < dates.size(); ++i)
    if (dates[i] <= dates[i - 1]) dates[i] = dates[i - 1] + 0.001;

  std::vector<DeviceCall> calls;
  for (int i = 0; i < count; ++i) {
    DeviceCall call;
    call.date = dates[i];
    int who = r.uniform(0, 99);
    if (who < 58 && !contacts.empty()) {
      const DeviceContact& c = contacts[r.next() % contacts.size()];
      if (!c.phones.empty()) {
        call.address = c.phones[r.next() % c.phones.size()].dialable;
        call.recordId = c.recordId;
      }
    }
    if (call.recordId == -1 && who < 97)
      call.address = strangers[r.next() % strangers.size()];
    call.originated = r.chance(0.4);
    if (call.originated) {
      call.answered = r.chance(0.88);
    } else {
      call.answered = r.chance(0.72);
    }
    if (call.answered) {
      int x = r.uniform(0, 9);
      call.duration = x < 6   ? r.uniform(3, 120)
                      : x < 9 ? r.uniform(120, 900)
                              : r.uniform(900, 3600);
    }
    // Missed calls of the last two days are still unread.
    call.read =
        call.originated || call.answered || call.date < kDeviceNow - 2 * kDay;
    calls.push_back(std::move(call));
  }
  return calls;
}

}  // namespace

DevicePeople generateDevicePeople(int contactCount, int callCount,
                                  uint64_t seed) {
  DevicePeople people;
  people.labels.assign(std::begin(kLabels), std::end(kLabels));
  DeviceRandom r(seed);
  std::vector<std::string> homeNumbers;
  int64_t id = 1;
  for (int i = 0; i < contactCount; ++i) {
    DeviceContact c;
    c.recordId = id;
    if (i == 0) {
      fillOwner(c, r);
    } else if (r.chance(0.08)) {
      fillCompany(c, r);
    } else {
      fillPerson(c, r, homeNumbers);
    }
    choosePicture(c, r);
    // Created over the four years before the newest call, in record order.
    c.created = static_cast<int64_t>(kDeviceNow) - 4 * 365 * kDay +
                (4 * 365 * kDay) * i / std::max(1, contactCount);
    people.contacts.push_back(std::move(c));
    id += r.chance(0.05) ? r.uniform(2, 4) : 1;
  }
  people.calls = makeCalls(people.contacts, callCount, r);
  return people;
}

}  // namespace zv
