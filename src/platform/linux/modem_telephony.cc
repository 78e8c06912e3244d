#include "platform/linux/modem_telephony.h"

#include <libmm-glib.h>

#include <deque>
#include <memory>
#include <set>

#include "platform/db/call_records.h"
#include "platform/db/contact_lookup.h"
#include "platform/db/platform_schema.h"
#include "platform/linux/call_history_queue.h"
#include "platform/linux/modem_call_state.h"

namespace zv::platform {
namespace {

namespace ps = platform_schema;

constexpr char kService[] = "org.freedesktop.ModemManager1";
constexpr char kCallInterface[] = "org.freedesktop.ModemManager1.Call";
// Ended calls kept for call(id): enough for any screen still looking at
// one, without growing with every call the phone ever had.
constexpr size_t kEndedKept = 64;
// Calls not yet in the call history (it was locked or full), beside it.
constexpr char kPendingCallsPath[] =
    "/var/mobile/Library/CallHistoryDB/zorvel.pending.plist";

double nowSeconds() { return static_cast<double>(g_get_real_time()) / 1e6; }

}  // namespace

struct ModemTelephony::Impl {
  ModemTelephony* owner;
  GDBusConnection* connection;
  std::function<std::string()> root, systemVersion;
  MMManager* manager = nullptr;
  GCancellable* cancellable = g_cancellable_new();

  struct Modem {
    MMObject* object = nullptr;
    MMModemVoice* voice = nullptr;
    gulong added = 0, deleted = 0;
  };
  std::map<std::string, Modem> modems;  // by object path

  struct Call {
    std::string modem;  // object path of its modem
    MMCall* proxy = nullptr;
    gulong notify = 0;
    bool announced = false;
    CallInfo info;
  };
  std::map<std::string, Call> live;      // by call object path
  std::map<CallId, std::string> pathOf;  // live calls only
  std::set<std::string> coming;          // call proxies being made
  std::deque<CallInfo> ended;
  std::map<CallObserverToken, std::function<void(const CallInfo&)>> observers;
  CallObserverToken nextToken = 1;
  CallId nextId = 1;
  uint64_t revision = 0;
  std::unique_ptr<CallHistoryQueue> history;

  ~Impl() {
    history.reset();
    g_cancellable_cancel(cancellable);
    for (auto& [path, call] : live) release(call);
    for (auto& [path, modem] : modems) release(modem);
    if (manager) {
      g_signal_handlers_disconnect_by_data(manager, this);
      g_object_unref(manager);
    }
    g_object_unref(cancellable);
    g_object_unref(connection);
  }

  void problem(const std::string& line) {
    if (owner->problem_) owner->problem_(line);
  }

  // --- Modems -------------------------------------------------------------
  void scan() {
    GList* objects =
        g_dbus_object_manager_get_objects(G_DBUS_OBJECT_MANAGER(manager));
    for (GList* l = objects; l; l = l->next) follow(MM_OBJECT(l->data));
    g_list_free_full(objects, g_object_unref);
  }

  void follow(MMObject* object) {
    const std::string path = mm_object_get_path(object);
    if (modems.count(path)) return;
    MMModemVoice* voice = mm_object_get_modem_voice(object);
    if (!voice) return;  // a data-only modem, or voice not up yet
    Modem& modem = modems[path];
    modem.object = MM_OBJECT(g_object_ref(object));
    modem.voice = voice;
    modem.added = g_signal_connect(
        voice, "call-added",
        G_CALLBACK(+[](MMModemVoice* v, const char* call, Impl* self) {
          self->make(self->modemOf(v), call);
        }),
        this);
    modem.deleted =
        g_signal_connect(voice, "call-deleted",
                         G_CALLBACK(+[](MMModemVoice*, const char* call,
                                        Impl* self) { self->gone(call); }),
                         this);
    struct Listing {
      Impl* self;
      std::string modem;
    };
    mm_modem_voice_list_calls(
        voice, cancellable,
        +[](GObject* source, GAsyncResult* result, gpointer data) {
          std::unique_ptr<Listing> listing(static_cast<Listing*>(data));
          GError* error = nullptr;
          GList* calls = mm_modem_voice_list_calls_finish(
              MM_MODEM_VOICE(source), result, &error);
          if (error) {
            if (!g_error_matches(error, G_IO_ERROR, G_IO_ERROR_CANCELLED))
              listing->self->problem(std::string("cannot list the calls: ") +
                                     error->message);
            g_error_free(error);
            return;
          }
          // (A modem that went meanwhile took its calls along.)
          if (listing->self->modems.count(listing->modem))
            for (GList* l = calls; l; l = l->next)
              listing->self->track(listing->modem, MM_CALL(l->data));
          g_list_free_full(calls, g_object_unref);
        },
        new Listing{this, path});
  }

  void forget(const std::string& modemPath) {
    auto it = modems.find(modemPath);
    if (it == modems.end()) return;
    // Its calls end with it: each one that was announced ends once, and
    // nothing new is announced for a modem that is no longer there.
    std::vector<std::string> calls;
    for (const auto& [path, call] : live)
      if (call.modem == modemPath) calls.push_back(path);
    for (const auto& path : calls) gone(path);
    release(it->second);
    modems.erase(it);
  }

  void release(Modem& modem) {
    g_signal_handler_disconnect(modem.voice, modem.added);
    g_signal_handler_disconnect(modem.voice, modem.deleted);
    g_object_unref(modem.voice);
    g_object_unref(modem.object);
  }

  std::string modemOf(MMModemVoice* voice) const {
    for (const auto& [path, modem] : modems)
      if (modem.voice == voice) return path;
    return {};
  }

  // --- Calls --------------------------------------------------------------
  // A call the modem announced: its proxy is made (reading its properties)
  // before it is looked at.
  void make(const std::string& modem, const char* path) {
    if (!path || live.count(path) || coming.count(path)) return;
    coming.insert(path);
    struct Making {
      Impl* self;
      std::string path, modem;
    };
    g_async_initable_new_async(
        MM_TYPE_CALL, G_PRIORITY_DEFAULT, cancellable,
        +[](GObject* source, GAsyncResult* result, gpointer data) {
          std::unique_ptr<Making> making(static_cast<Making*>(data));
          GError* error = nullptr;
          GObject* object = g_async_initable_new_finish(
              G_ASYNC_INITABLE(source), result, &error);
          if (error) {
            const bool cancelled =
                g_error_matches(error, G_IO_ERROR, G_IO_ERROR_CANCELLED);
            g_error_free(error);
            if (cancelled) return;
          }
          Impl* self = making->self;
          // Gone before it could be read (deleted meanwhile, or the object
          // was never there): nothing to show.
          const bool wanted = self->coming.erase(making->path) > 0;
          if (!object) return;
          if (wanted) self->track(making->modem, MM_CALL(object));
          g_object_unref(object);
        },
        new Making{this, path, modem}, "g-flags", G_DBUS_PROXY_FLAGS_NONE,
        "g-name", kService, "g-connection", connection, "g-object-path", path,
        "g-interface-name", kCallInterface, nullptr);
  }

  void track(const std::string& modem, MMCall* proxy) {
    const std::string path = mm_call_get_path(proxy);
    if (live.count(path)) return;
    Call& call = live[path];
    call.modem = modem;
    call.proxy = MM_CALL(g_object_ref(proxy));
    call.notify =
        g_signal_connect(proxy, "notify::state",
                         G_CALLBACK(+[](MMCall* c, GParamSpec*, Impl* self) {
                           self->update(mm_call_get_path(c));
                         }),
                         this);
    update(path);
  }

  void update(const std::string& path) {
    auto it = live.find(path);
    if (it == live.end()) return;
    Call& call = it->second;
    const int32_t status = properties(call).status;
    if (!call.announced) {
      if (status == 0) return;
      // One seen only once it had ended (at start-up) is history already.
      if (status == kCallEnded) {
        drop(it);
        return;
      }
      // Every call is announced as soon as its state is known, a second
      // one ringing in while another rings included (call waiting): each
      // is decided on at once, none waits for another's turn.
      announce(call, status);
      return;
    }
    if (status == 0 || status == call.info.status) return;
    if (status == kCallEnded) {
      finish(it);
    } else {
      if (status == kCallActive && call.info.connectedAt == 0)
        call.info.connectedAt = nowSeconds();
      change(call.info, status);
    }
  }

  static ModemCallProperties properties(const Call& call) {
    return modemCallProperties(G_DBUS_PROXY(call.proxy));
  }

  // The call as far as the modem has told: number, direction, caller.
  CallInfo describe(Call& call) {
    CallInfo info = call.info;
    if (info.date == 0) info.date = nowSeconds();
    const ModemCallProperties said = properties(call);
    info.isOutgoing = said.outgoing;
    if (said.number) {
      info.destinationID = said.number;
      // Never waits for a lock: the decision on the call comes first.
      auto found = ps::lookUpContactNow(root() + ps::kAddressBookPath,
                                        *info.destinationID);
      if (found.match) {
        info.abUID = static_cast<int32_t>(found.match->recordId);
        info.contactLabel = found.match->label;
      }
      info.contactUnknown = !found.readable;
    }
    return info;
  }

  void announce(Call& call, int32_t status) {
    call.info = describe(call);
    call.info.id = nextId++;
    if (status == kCallActive) call.info.connectedAt = call.info.date;
    call.announced = true;
    pathOf[call.info.id] = mm_call_get_path(call.proxy);
    change(call.info, status);
  }

  // The call ended (terminated, or its object left the bus): history row
  // first, then ending and ended to the observers.
  void finish(std::map<std::string, Call>::iterator it) {
    CallInfo info = it->second.info;
    drop(it);
    writeHistory(info);
    change(info, kCallEnding);
    change(info, kCallEnded);
    ended.push_back(info);
    if (ended.size() > kEndedKept) ended.pop_front();
  }

  void drop(std::map<std::string, Call>::iterator it) {
    if (it->second.announced) pathOf.erase(it->second.info.id);
    release(it->second);
    live.erase(it);
  }

  void release(Call& call) {
    g_signal_handler_disconnect(call.proxy, call.notify);
    g_object_unref(call.proxy);
  }

  void gone(const std::string& path) {
    coming.erase(path);
    auto it = live.find(path);
    if (it == live.end()) return;
    if (it->second.announced)
      finish(it);
    else
      drop(it);
  }

  void change(CallInfo& info, int32_t status) {
    info.status = status;
    info.revision = ++revision;
    // An observer may remove itself or others while being told.
    auto current = observers;
    for (auto& [token, callback] : current)
      if (observers.count(token)) callback(info);
  }

  void writeHistory(const CallInfo& call) {
    ps::FinishedCall row;
    row.address = call.destinationID.value_or("");
    row.date = call.date;
    row.answered = call.connectedAt > 0;
    row.duration = row.answered ? nowSeconds() - call.connectedAt : 0;
    row.originated = call.isOutgoing;
    // An incoming call that was never answered is a missed call nobody has
    // looked at yet.
    row.read = call.isOutgoing || row.answered;
    row.recordId = call.abUID;
    row.serial = call.id;
    const ps::Database which = ps::callHistoryDatabase(systemVersion());
    if (!history) startHistory();
    history->add({root() + ps::callHistoryPath(which), which}, row);
  }

  // Rows an earlier run could not write go in first.
  void startHistory() {
    history = std::make_unique<CallHistoryQueue>(
        root() + kPendingCallsPath,
        [this](const std::string& line) { problem(line); });
  }

  // Asks ModemManager to act on a call; a failure other than our own
  // shutdown is reported, naming the call.
  using CallStart = void (*)(MMCall*, GCancellable*, GAsyncReadyCallback,
                             gpointer);
  using CallFinish = gboolean (*)(MMCall*, GAsyncResult*, GError**);
  void act(MMCall* proxy, CallStart start, CallFinish finish,
           const char* verb) {
    struct Pending {
      Impl* self;
      CallFinish finish;
      const char* verb;
    };
    start(
        proxy, cancellable,
        +[](GObject* source, GAsyncResult* result, gpointer data) {
          std::unique_ptr<Pending> pending(static_cast<Pending*>(data));
          GError* error = nullptr;
          if (!pending->finish(MM_CALL(source), result, &error)) {
            if (!g_error_matches(error, G_IO_ERROR, G_IO_ERROR_CANCELLED))
              pending->self->problem(std::string("cannot ") + pending->verb +
                                     " " + mm_call_get_path(MM_CALL(source)) +
                                     ": " + error->message);
            g_error_free(error);
          }
        },
        new Pending{this, finish, verb});
  }
  void hangup(MMCall* proxy) {
    act(proxy, mm_call_hangup, mm_call_hangup_finish, "hang up");
  }
  void accept(MMCall* proxy) {
    act(proxy, mm_call_accept, mm_call_accept_finish, "answer");
  }

  void presence() {
    gchar* owner_name = g_dbus_object_manager_client_get_name_owner(
        G_DBUS_OBJECT_MANAGER_CLIENT(manager));
    const bool present = owner_name != nullptr;
    g_free(owner_name);
    if (owner->presence_) owner->presence_(present);
  }
};

ModemTelephony::ModemTelephony(GDBusConnection* connection,
                               std::function<std::string()> root,
                               std::function<std::string()> systemVersion)
    : impl_(std::make_unique<Impl>()) {
  impl_->owner = this;
  impl_->connection = G_DBUS_CONNECTION(g_object_ref(connection));
  impl_->root = std::move(root);
  impl_->systemVersion = std::move(systemVersion);
}

ModemTelephony::~ModemTelephony() = default;

bool ModemTelephony::start(std::string* error) {
  GError* e = nullptr;
  // Not auto-started: a phone without ModemManager running is followed
  // from when it appears.
  impl_->manager = mm_manager_new_sync(
      impl_->connection, G_DBUS_OBJECT_MANAGER_CLIENT_FLAGS_DO_NOT_AUTO_START,
      impl_->cancellable, &e);
  if (!impl_->manager) {
    if (error) *error = e ? e->message : "no ModemManager client";
    if (e) g_error_free(e);
    return false;
  }
  Impl* impl = impl_.get();
  g_signal_connect(
      impl->manager, "object-added",
      G_CALLBACK(+[](GDBusObjectManager*, GDBusObject* object, Impl* self) {
        self->follow(MM_OBJECT(object));
      }),
      impl);
  g_signal_connect(
      impl->manager, "object-removed",
      G_CALLBACK(+[](GDBusObjectManager*, GDBusObject* object, Impl* self) {
        self->forget(g_dbus_object_get_object_path(object));
      }),
      impl);
  // The voice interface comes when the modem is enabled, and goes with it.
  g_signal_connect(
      impl->manager, "interface-added",
      G_CALLBACK(+[](GDBusObjectManager*, GDBusObject* object, GDBusInterface*,
                     Impl* self) { self->follow(MM_OBJECT(object)); }),
      impl);
  g_signal_connect(impl->manager, "interface-removed",
                   G_CALLBACK(+[](GDBusObjectManager*, GDBusObject* object,
                                  GDBusInterface*, Impl* self) {
                     const char* path = g_dbus_object_get_object_path(object);
                     auto it = self->modems.find(path);
                     if (it == self->modems.end()) return;
                     MMModemVoice* voice =
                         mm_object_peek_modem_voice(MM_OBJECT(object));
                     if (!voice) self->forget(path);
                   }),
                   impl);
  g_signal_connect(
      impl->manager, "notify::name-owner",
      G_CALLBACK(+[](GObject*, GParamSpec*, Impl* self) { self->presence(); }),
      impl);
  impl->startHistory();
  impl->presence();
  impl->scan();
  return true;
}

std::vector<CallInfo> ModemTelephony::calls() const {
  std::vector<CallInfo> out;
  for (const auto& [id, path] : impl_->pathOf)
    out.push_back(impl_->live.at(path).info);
  return out;
}

std::optional<CallInfo> ModemTelephony::call(CallId id) const {
  if (auto it = impl_->pathOf.find(id); it != impl_->pathOf.end())
    return impl_->live.at(it->second).info;
  for (const auto& info : impl_->ended)
    if (info.id == id) return info;
  return std::nullopt;
}

void ModemTelephony::disconnect(CallId id) {
  auto it = impl_->pathOf.find(id);
  if (it == impl_->pathOf.end()) return;
  impl_->hangup(impl_->live.at(it->second).proxy);
}

void ModemTelephony::answer(CallId id) {
  auto it = impl_->pathOf.find(id);
  if (it == impl_->pathOf.end()) return;
  const auto& call = impl_->live.at(it->second);
  if (call.info.status == kCallRinging) impl_->accept(call.proxy);
}

void ModemTelephony::disconnectAll() {
  for (auto& [path, modem] : impl_->modems) {
    mm_modem_voice_hangup_all(
        modem.voice, impl_->cancellable,
        +[](GObject* source, GAsyncResult* result, gpointer data) {
          GError* error = nullptr;
          if (!mm_modem_voice_hangup_all_finish(MM_MODEM_VOICE(source), result,
                                                &error)) {
            if (!g_error_matches(error, G_IO_ERROR, G_IO_ERROR_CANCELLED))
              static_cast<Impl*>(data)->problem(
                  std::string("cannot hang up the calls of ") +
                  mm_modem_voice_get_path(MM_MODEM_VOICE(source)) + ": " +
                  error->message);
            g_error_free(error);
          }
        },
        impl_.get());
  }
}

std::string ModemTelephony::operatorName() const {
  for (const auto& [path, modem] : impl_->modems)
    if (MMModem3gpp* gpp = mm_object_peek_modem_3gpp(modem.object))
      if (const char* name = mm_modem_3gpp_get_operator_name(gpp)) return name;
  return "";
}

CallObserverToken ModemTelephony::observeCalls(
    std::function<void(const CallInfo&)> callback) {
  CallObserverToken token = impl_->nextToken++;
  impl_->observers[token] = std::move(callback);
  return token;
}

void ModemTelephony::removeCallObserver(CallObserverToken token) {
  impl_->observers.erase(token);
}

}  // namespace zv::platform
