#include "tools/zorvel/phone_setup/settings_reference.h"

#include <array>

namespace zv::cli {
namespace {

constexpr double kNone = -1e300;  // no bound
constexpr int kMax32 = 2147483647;

struct Row {
  const char* key;
  const char* meaning;
  double min = kNone, max = kNone;
};

// One row per key, in the order of the catalogue's first mention.
const Row kRows[] = {
    {"Enable", "master switch: the extension does nothing when false"},
    {"EnableDialer", "T9 search of contacts on the Phone keypad"},
    {"EnableArea", "show the area (location) of numbers"},
    {"EnableAvatar", "contact pictures in Recents, Contacts and Messages"},
    {"EnableInfo",
     "caller information (organisation, note, ...) on the call "
     "screen"},
    {"EnableBlacklist", "call blocking by lists, areas and strangers"},
    {"EnablePrefix", "prefix dialling"},
    {"MyInfo", "address-book record of the user's own card, -1 for none", -1,
     kMax32},
    {"AreaDatabase",
     "file name of the area database under "
     "/Library/Zorvel/Area/ (China, USA, or one built with "
     "`zorvel areadb`)"},
    {"AreaOnlyStrangers",
     "show areas only for numbers not in the address "
     "book"},
    {"AreaAlone", "area text without the line type"},
    {"PrefixNumber", "the dialling prefix"},
    {"DialerT9Database",
     "reading table for T9 search, under "
     "/Library/Zorvel/Table/"},
    {"DialerFormatPhoneNubmer", "format numbers in keypad results"},
    {"DialerSortOptimization", "optimised ordering of search results"},
    {"DialerAutoClearNumber", "clear the typed number after dialling"},
    {"DialerNameOrder",
     "name order in results: 0 the system's, 1 first name "
     "first, 2 last name first",
     0, 2},
    {"DialerNumberHighlightColor",
     "colour of matched digits: 0 blue, 1 "
     "green, 2 red, 3 none",
     0, 3},
    {"DialerNameHighlightColor",
     "colour of matched letters: 0 blue, 1 "
     "green, 2 red, 3 none",
     0, 3},
    {"DialerListHighlightColor",
     "colour in the result list: 0 blue, 1 green, "
     "2 red, 3 none",
     0, 3},
    {"DialerJianPin", "match name initials"},
    {"DialerPinYin", "match full pinyin spellings"},
    {"DialerEnglish", "match letters of non-Chinese names"},
    {"DialerPhoneNumber", "match digits inside phone numbers"},
    {"DialerCompany", "also search company names"},
    {"DialerCallHistory", "also search numbers of the call history"},
    {"DialerAnyNamePos", "a name match may start anywhere in the name"},
    {"DialerAnyNumberPos", "a number match may start anywhere in the number"},
    {"DialerEnableCache", "keep the search data cached"},
    {"AreaNameOutgoingCall", "area on the outgoing-call screen"},
    {"AreaTypeOutgoingCall", "line type on the outgoing-call screen"},
    {"AreaReplaceTextOutgoingCall",
     "the area replaces the screen's own text "
     "instead of joining it"},
    {"AreaStyleOutgoingCall",
     "0 the area joins the screen's label, 1 it has "
     "a label of its own",
     0, 1},
    {"AreaNameInCall", "area during the call"},
    {"AreaTypeInCall", "line type during the call"},
    {"AreaNameKeypad", "area of the typed number on the keypad"},
    {"AreaTypeKeypad", "line type on the keypad"},
    {"AreaReplaceTextKeypad", "replace instead of join, on the keypad"},
    {"AreaNameKeypadList", "area in keypad result rows"},
    {"AreaTypeKeypadList", "line type in keypad result rows"},
    {"AreaNameCallHistory", "area in Recents"},
    {"AreaTypeCallHistory", "line type in Recents"},
    {"AreaReplaceTextCallHistory", "replace instead of join, in Recents"},
    {"AreaNameContacts", "area in contact lists and pickers"},
    {"AreaTypeContacts", "line type in contact lists and pickers"},
    {"AreaReplaceTextContacts", "replace instead of join, in contact lists"},
    {"AvatarCallHistory", "contact pictures in Recents"},
    {"AvatarContacts", "contact pictures in contact lists"},
    {"AvatarKeypad", "contact picture on the keypad"},
    {"AvatarKeypadList", "contact pictures in keypad result rows"},
    {"InfoOutgoingCallNumber", "show the number on outgoing calls"},
    {"PrefixLocalAreaCode", "the user's own area, for prefix dialling"},
    {"PrefixExcludeArea", "areas left out of prefix dialling"},
    {"PrefixFavorites", "prefix dialling from Favorites"},
    {"PrefixCallHistory", "prefix dialling from Recents"},
    {"PrefixContacts", "prefix dialling from Contacts"},
    {"PrefixKeypad", "prefix dialling from the keypad"},
    {"EnableConnectedVibrate", "vibrate when a call is connected"},
    {"ConnectedVibrateIntensity", "strength of that vibration, 0 to 1", 0, 1},
    {"ConnectedVibrateTotalDuration", "total vibration time, seconds", 0, 60},
    {"ConnectedVibrateOnDuration", "length of one pulse, seconds", 0, 60},
    {"ConnectedVibrateOffDuration", "pause between pulses, seconds", 0, 60},
    {"CallHistoryLimit", "number of call records kept", 0, kMax32},
    {"CallHistoryRingDuration", "record and show how long calls rang"},
    {"AreaNameSMS", "area in the conversation list"},
    {"AreaTypeSMS", "line type in the conversation list"},
    {"AvatarSMS", "contact pictures in the conversation list"},
    {"AvatarSMSChat", "contact pictures in a conversation"},
    {"SMSSelectGroup", "recipient groups"},
    {"SMSMultiSelect", "pick several recipients at once"},
    {"AreaNameIncomingCall", "area on the incoming-call screen"},
    {"AreaTypeIncomingCall", "line type on the incoming-call screen"},
    {"AreaReplaceTextIncomingCall",
     "replace instead of join, on the "
     "incoming-call screen"},
    {"AreaStyleIncomingCall",
     "0 the area joins the caller's label, 1 it goes "
     "into the information text",
     0, 1},
    {"AreaNameNotification", "area in call notifications"},
    {"AreaTypeNotification", "line type in call notifications"},
    {"AreaNameMore", "area on further call-screen labels"},
    {"AreaTypeMore", "line type on further call-screen labels"},
    {"AreaReplaceTextMore", "replace instead of join, on further labels"},
    {"InfoIncomingCallNumber", "show the caller's number"},
    {"InfoIncomingCallOrganization", "show the contact's organisation"},
    {"InfoIncomingCallDepartment", "show the contact's department"},
    {"InfoIncomingCallJobTitle", "show the contact's job title"},
    {"InfoIncomingCallNickname", "show the contact's nickname"},
    {"InfoIncomingCallBirthday", "show the contact's birthday"},
    {"InfoIncomingCallNote", "show the contact's note"},
    {"BlacklistBlockMode",
     "0 block the blacklist, 1 block all but the "
     "whitelist, 2 block every call, 3 only the area "
     "rule",
     0, 3},
    {"BlacklistBlockAction",
     "0 hang up the blocked call, 1 let it ring "
     "unseen, 2 hang up all calls",
     0, 2},
    {"BlacklistBlockingRemind",
     "reminder of a blocked call: 1 vibrate, 2 "
     "play the reminder sound, 3 both",
     0, 3},
    {"BlacklistBlockStrangers",
     "block numbers that are not in the address "
     "book"},
    {"BlacklistBlockBlockedCaller",
     "also block calls the system reports as "
     "blocked"},
    {"BlacklistBlockArea", "areas whose calls are blocked"},
    {"IncomingCallDeclineButton",
     "decline button on the incoming-call "
     "screen"},
    {"IncomingCallDelayRing", "delay before the ringtone, seconds", 0, 60},
    {"CarrierName", "carrier name shown on the call screen"},
    {"ControlCenterHome", "choice for this Control Centre button", 0, kMax32},
    {"ControlCenterMultitasking", "choice for this Control Centre button", 0,
     kMax32},
    {"ControlCenterLockScreen", "choice for this Control Centre button", 0,
     kMax32},
    {"ControlCenterCellularData", "choice for this Control Centre button", 0,
     kMax32},
};

}  // namespace

const KeyReference* keyReference(std::string_view key) {
  static const auto table = [] {
    std::array<KeyReference, std::size(kRows)> out;
    for (size_t i = 0; i < std::size(kRows); ++i) {
      const Row& r = kRows[i];
      out[i].key = r.key;
      out[i].meaning = r.meaning;
      if (r.min != kNone) out[i].min = r.min;
      if (r.max != kNone) out[i].max = r.max;
    }
    return out;
  }();
  for (const auto& entry : table)
    if (entry.key == key) return &entry;
  return nullptr;
}

}  // namespace zv::cli
