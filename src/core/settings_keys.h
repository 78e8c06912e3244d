// The settings keys, declared once. Each table lists X(type, Key, default)
// in declaration order; the type is bool, int32_t, float or std::string.
// The classes in settings.h and settings_catalogue.h expand these tables
// into their fields, accessors (named exactly as the key), loadSettings and
// describe(). A key missing from the file takes the default shown here.
#pragma once

#include <cstdint>
#include <string>

// ZVSettings: the master switch, tested once at start-up.
#define ZV_BASE_SETTINGS_KEYS(X) X(bool, Enable, true)

// ZVGeneralSettings: the feature switches and keys shared by every host.
#define ZV_GENERAL_SETTINGS_KEYS(X)     \
  X(bool, EnableDialer, true)           \
  X(bool, EnableArea, true)             \
  X(bool, EnableAvatar, false)          \
  X(bool, EnableInfo, false)            \
  X(bool, EnableBlacklist, false)       \
  X(bool, EnablePrefix, false)          \
  X(int32_t, MyInfo, -1)                \
  X(std::string, AreaDatabase, "China") \
  X(bool, AreaOnlyStrangers, false)     \
  X(bool, AreaAlone, true)              \
  X(std::string, PrefixNumber, "")

// Keys that the Phone application and the call-screen hosts both read, with
// the same meaning and defaults: the area on the outgoing-call and in-call
// screens, and the vibration when an outgoing call connects.
#define ZV_OUTGOING_CALL_AREA_KEYS(X)         \
  X(bool, AreaNameOutgoingCall, true)         \
  X(bool, AreaTypeOutgoingCall, false)        \
  X(bool, AreaReplaceTextOutgoingCall, false) \
  X(int32_t, AreaStyleOutgoingCall, 0)        \
  X(bool, AreaNameInCall, false)              \
  X(bool, AreaTypeInCall, false)

#define ZV_CONNECTED_VIBRATE_KEYS(X)            \
  X(bool, EnableConnectedVibrate, false)        \
  X(float, ConnectedVibrateIntensity, 0.3f)     \
  X(float, ConnectedVibrateTotalDuration, 0.5f) \
  X(float, ConnectedVibrateOnDuration, 0.5f)    \
  X(float, ConnectedVibrateOffDuration, 0.0f)

// ZVPhoneSettings: the Phone application.
#define ZV_PHONE_SETTINGS_KEYS(X)                \
  X(std::string, DialerT9Database, "PinYin.txt") \
  X(bool, DialerFormatPhoneNubmer, true)         \
  X(bool, DialerSortOptimization, true)          \
  X(bool, DialerAutoClearNumber, false)          \
  X(int32_t, DialerNameOrder, 0)                 \
  X(int32_t, DialerNumberHighlightColor, 0)      \
  X(int32_t, DialerNameHighlightColor, 0)        \
  X(int32_t, DialerListHighlightColor, 0)        \
  X(bool, DialerJianPin, true)                   \
  X(bool, DialerPinYin, true)                    \
  X(bool, DialerEnglish, true)                   \
  X(bool, DialerPhoneNumber, true)               \
  X(bool, DialerCompany, false)                  \
  X(bool, DialerCallHistory, false)              \
  X(bool, DialerAnyNamePos, true)                \
  X(bool, DialerAnyNumberPos, true)              \
  X(bool, DialerEnableCache, true)               \
  ZV_OUTGOING_CALL_AREA_KEYS(X)                  \
  X(bool, AreaNameKeypad, true)                  \
  X(bool, AreaTypeKeypad, false)                 \
  X(bool, AreaReplaceTextKeypad, false)          \
  X(bool, AreaNameKeypadList, true)              \
  X(bool, AreaTypeKeypadList, false)             \
  X(bool, AreaNameCallHistory, true)             \
  X(bool, AreaTypeCallHistory, false)            \
  X(bool, AreaReplaceTextCallHistory, false)     \
  X(bool, AreaNameContacts, true)                \
  X(bool, AreaTypeContacts, false)               \
  X(bool, AreaReplaceTextContacts, false)        \
  X(bool, AvatarCallHistory, true)               \
  X(bool, AvatarContacts, true)                  \
  X(bool, AvatarKeypad, false)                   \
  X(bool, AvatarKeypadList, true)                \
  X(bool, InfoOutgoingCallNumber, false)         \
  X(std::string, PrefixLocalAreaCode, "")        \
  X(std::string, PrefixExcludeArea, "")          \
  X(bool, PrefixFavorites, false)                \
  X(bool, PrefixCallHistory, false)              \
  X(bool, PrefixContacts, false)                 \
  X(bool, PrefixKeypad, true)                    \
  ZV_CONNECTED_VIBRATE_KEYS(X)                   \
  X(int32_t, CallHistoryLimit, 100)              \
  X(bool, CallHistoryRingDuration, false)

// ZVSMSSettings: the Messages application.
#define ZV_SMS_SETTINGS_KEYS(X)    \
  X(bool, AreaNameSMS, true)       \
  X(bool, AreaTypeSMS, false)      \
  X(bool, AreaNameContacts, true)  \
  X(bool, AreaTypeContacts, false) \
  X(bool, AvatarSMS, true)         \
  X(bool, AvatarSMSChat, true)     \
  X(bool, SMSSelectGroup, false)   \
  X(bool, SMSMultiSelect, false)

// ZVIncomingCallSettings: SpringBoard and the in-call service.
#define ZV_INCOMING_CALL_SETTINGS_KEYS(X)      \
  X(bool, AreaNameIncomingCall, true)          \
  X(bool, AreaTypeIncomingCall, false)         \
  X(bool, AreaReplaceTextIncomingCall, false)  \
  X(int32_t, AreaStyleIncomingCall, 0)         \
  ZV_OUTGOING_CALL_AREA_KEYS(X)                \
  X(bool, AreaNameNotification, true)          \
  X(bool, AreaTypeNotification, false)         \
  X(bool, AreaNameMore, false)                 \
  X(bool, AreaTypeMore, false)                 \
  X(bool, AreaReplaceTextMore, false)          \
  X(bool, InfoIncomingCallNumber, true)        \
  X(bool, InfoIncomingCallOrganization, false) \
  X(bool, InfoIncomingCallDepartment, false)   \
  X(bool, InfoIncomingCallJobTitle, false)     \
  X(bool, InfoIncomingCallNickname, false)     \
  X(bool, InfoIncomingCallBirthday, false)     \
  X(bool, InfoIncomingCallNote, false)         \
  X(bool, InfoOutgoingCallNumber, false)       \
  X(int32_t, BlacklistBlockMode, 0)            \
  X(int32_t, BlacklistBlockAction, 0)          \
  X(int32_t, BlacklistBlockingRemind, 0)       \
  X(bool, BlacklistBlockStrangers, false)      \
  X(bool, BlacklistBlockBlockedCaller, false)  \
  X(std::string, BlacklistBlockArea, "")       \
  X(bool, IncomingCallDeclineButton, false)    \
  X(float, IncomingCallDelayRing, 0.0f)        \
  X(bool, CallHistoryRingDuration, false)      \
  ZV_CONNECTED_VIBRATE_KEYS(X)                 \
  X(std::string, CarrierName, "")

// ZVControlCenterSettings: SpringBoard's Control Centre buttons.
#define ZV_CONTROL_CENTER_SETTINGS_KEYS(X) \
  X(int32_t, ControlCenterHome, 0)         \
  X(int32_t, ControlCenterMultitasking, 0) \
  X(int32_t, ControlCenterLockScreen, 0)   \
  X(int32_t, ControlCenterCellularData, 0)
